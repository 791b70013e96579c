// Noise through a low pass. The result is held against a sum of products that the testbench forms itself.
`timescale 1ns / 1ps
module fir_tb;
    reg clk = 0, reset = 1, valid = 0, write = 0;
    reg signed [15:0] sample = 0, coefficient = 0;
    reg [1:0] address = 0;
    wire signed [34:0] result;
    wire result_valid;
    fir dut (.clk(clk), .reset(reset), .valid(valid), .sample(sample), .write(write), .address(address),
             .coefficient(coefficient), .result(result), .result_valid(result_valid));
    always #2.5 clk = ~clk;

    reg signed [15:0] taps [0:3];
    reg signed [15:0] past [0:7];
    reg signed [34:0] expected;
    integer i, n, errors, seed;
    initial begin
        if ($test$plusargs("dump")) begin
            $dumpfile("fir.vcd");
            $dumpvars(0, fir_tb);
        end
        seed = 1;
        errors = 0;
        taps[0] = -16'sd310; taps[1] = 16'sd1250; taps[2] = 16'sd5700; taps[3] = 16'sd9800;
        for (i = 0; i < 8; i = i + 1)
            past[i] = 0;
        @(negedge clk);
        @(negedge clk);
        reset = 0;
        for (i = 0; i < 4; i = i + 1) begin
            write = 1; address = i; coefficient = taps[i];
            @(negedge clk);
        end
        write = 0;
        valid = 1;
        for (n = 0; n < 2000; n = n + 1) begin
            sample = $random(seed);
            for (i = 7; i > 0; i = i - 1)
                past[i] = past[i - 1];
            past[0] = sample;
            @(negedge clk);
            expected = 0;
            for (i = 0; i < 8; i = i + 1)
                expected = expected + past[i] * taps[i < 4 ? i : 7 - i];
            if (result !== expected) begin
                errors = errors + 1;
                $display("sample %0d: %0d, expected %0d", n, result, expected);
            end
        end
        if (errors != 0) $fatal(1, "fir: %0d errors", errors);
        $display("fir: 2000 samples as expected");
        $finish;
    end
endmodule
