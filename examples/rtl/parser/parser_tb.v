// Frames of random content, one in sixteen with a wrong sum, two in three for this station. Counts at the end are held
// against the testbench's own.
`timescale 1ns / 1ps
module parser_tb;
    reg clk = 0, reset = 1, valid = 0, start = 0, ready = 1;
    reg [7:0] data = 0, count_type = 0;
    wire [7:0] content;
    wire [15:0] count;
    wire content_valid, good, bad;
    parser dut (.clk(clk), .reset(reset), .station(8'h2a), .data(data), .valid(valid), .start(start), .content(content),
                .content_valid(content_valid), .content_ready(ready), .count_type(count_type), .count(count),
                .frame_good(good), .frame_bad(bad));
    always #2 clk = ~clk;

    integer expected [0:255];
    integer i, n, length, errors, seed, goods, bads, passed, received;
    reg [7:0] sum, kind;
    reg mine, spoilt;
    always @(posedge clk) begin
        if (good) goods = goods - 1;
        if (bad) bads = bads - 1;
        if (content_valid && ready) received = received + 1;
    end

    task send(input [7:0] value, input first);
        begin
            data = value; valid = 1; start = first;
            sum = first ? value : sum + value;
            @(negedge clk);
            valid = 0; start = 0;
        end
    endtask

    initial begin
        if ($test$plusargs("dump")) begin
            $dumpfile("parser.vcd");
            $dumpvars(0, parser_tb);
        end
        seed = 7; errors = 0; goods = 0; bads = 0; passed = 0; received = 0;
        for (i = 0; i < 256; i = i + 1)
            expected[i] = 0;
        repeat (3) @(negedge clk);
        reset = 0;
        repeat (260) @(negedge clk); // the counters are cleared
        for (n = 0; n < 300; n = n + 1) begin
            mine = $unsigned($random(seed)) % 3 != 0;
            spoilt = $unsigned($random(seed)) % 16 == 0;
            kind = $unsigned($random(seed)) % 8;
            length = $unsigned($random(seed)) % 24;
            send(mine ? 8'h2a : 8'h11, 1'b1);
            send(8'h77, 1'b0);
            send(kind, 1'b0);
            send(length[7:0], 1'b0);
            for (i = 0; i < length; i = i + 1)
                send($random(seed), 1'b0);
            send(spoilt ? sum ^ 8'h55 : sum, 1'b0);
            if (spoilt)
                bads = bads + 1;
            else begin
                goods = goods + 1;
                expected[kind] = expected[kind] + 1;
            end
            if (mine)
                passed = passed + length;
            repeat ($unsigned($random(seed)) % 4) @(negedge clk);
        end
        repeat (40) @(negedge clk);
        for (i = 0; i < 8; i = i + 1) begin
            count_type = i;
            @(negedge clk);
            @(negedge clk);
            if (count !== expected[i][15:0]) begin
                errors = errors + 1;
                $display("type %0d: %0d, expected %0d", i, count, expected[i]);
            end
        end
        if (goods != 0 || bads != 0 || passed != received) begin
            errors = errors + 1;
            $display("%0d good and %0d bad frames and %0d bytes are missing", goods, bads, passed - received);
        end
        if (errors != 0) $fatal(1, "parser: %0d errors", errors);
        $display("parser: 300 frames as expected");
        $finish;
    end
endmodule
