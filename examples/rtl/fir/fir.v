// A FIR filter of eight taps, symmetric, with coefficients that can be written: a tap multiplies and adds on to the sum of
// the one before it (transposed form).
module fir (
    input  wire               clk,
    input  wire               reset,
    input  wire               valid,
    input  wire signed [15:0] sample,
    input  wire               write,
    input  wire        [1:0]  address,
    input  wire signed [15:0] coefficient,
    output wire signed [34:0] result,
    output reg                result_valid
);
    localparam TAPS = 8;
    (* mem2reg *) // registers, all read at once
    reg signed [15:0] coefficients [0:TAPS/2-1];
    wire signed [34:0] sums [0:TAPS];
    assign sums[0] = 35'sd0;
    assign result = sums[TAPS];

    integer i;
    always @(posedge clk) begin
        if (reset)
            for (i = 0; i < TAPS / 2; i = i + 1)
                coefficients[i] <= 16'sd0;
        else if (write)
            coefficients[address] <= coefficient;
        result_valid <= valid && !reset;
    end

    genvar t;
    generate
        for (t = 0; t < TAPS; t = t + 1) begin : tap
            fir_tap mac (
                .clk(clk), .reset(reset), .valid(valid), .sample(sample),
                .coefficient(coefficients[t < TAPS / 2 ? t : TAPS - 1 - t]),
                .previous(sums[t]), .sum(sums[t + 1])
            );
        end
    endgenerate
endmodule

module fir_tap (
    input  wire               clk,
    input  wire               reset,
    input  wire               valid,
    input  wire signed [15:0] sample,
    input  wire signed [15:0] coefficient,
    input  wire signed [34:0] previous,
    output reg  signed [34:0] sum
);
    wire signed [31:0] product = sample * coefficient;
    always @(posedge clk)
        if (reset)
            sum <= 35'sd0;
        else if (valid)
            sum <= previous + product;
endmodule
