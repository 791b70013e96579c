// Squares the numbers from 40 down to 1, stores and loads them again, and adds them up: 22140. Three times.
`timescale 1ns / 1ps
module processor_tb;
    reg clk = 0, reset = 1, load = 0;
    reg [9:0] load_address = 0;
    reg [15:0] load_data = 0;
    wire [31:0] out;
    wire out_valid, done;
    processor dut (.clk(clk), .reset(reset), .load(load), .load_address(load_address), .load_data(load_data), .out(out),
                   .out_valid(out_valid), .done(done));
    always #4 clk = ~clk;

    integer outs, errors;
    reg [31:0] last;
    always @(posedge clk)
        if (out_valid) begin
            outs = outs + 1;
            last = out;
        end

    task put(input [15:0] word);
        begin
            load_data = word;
            @(negedge clk);
            load_address = load_address + 10'd1;
        end
    endtask

    initial begin
        if ($test$plusargs("dump")) begin
            $dumpfile("processor.vcd");
            $dumpvars(0, processor_tb);
        end
        outs = 0; errors = 0;
        @(negedge clk);
        load = 1;
        put(16'h0128); // r1 = 40
        put(16'h0200); // r2 = 0
        put(16'h0301); // r3 = 1
        put(16'h7411); // 3: r4 = r1 * r1
        put(16'hb410); // memory[r1] = r4
        put(16'ha510); // r5 = memory[r1]
        put(16'h2225); // r2 = r2 + r5
        put(16'h6624); // r6 = r2 ^ r4
        put(16'h9763); // r7 = r6 >> r3
        put(16'he200); // out r2
        put(16'h3113); // r1 = r1 - r3
        put(16'hc1f8); // if r1 != 0: back by 8
        put(16'hf000); // from the start
        load = 0;
        @(negedge clk);
        reset = 0;
        repeat (3) begin
            @(posedge done);
            @(negedge clk);
        end
        if (last !== 32'd22140 || outs != 120) begin
            $display("%0d numbers, the last %0d; expected 120 and 22140", outs, last);
            $fatal(1, "processor: wrong");
        end
        $display("processor: 40 squares add up to 22140, three times");
        $finish;
    end
endmodule
