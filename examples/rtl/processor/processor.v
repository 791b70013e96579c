// A small processor: 16 registers of 32 bits, instructions of 16 bits in a memory of 1024, data in one of 1024 words. Each
// instruction takes three cycles: fetch, execute, write.
//   [15:12] operation  [11:8] destination  [7:4] first  [3:0] second, or [7:0] a constant
module processor (
    input  wire        clk,
    input  wire        reset,
    input  wire        load,
    input  wire [9:0]  load_address,
    input  wire [15:0] load_data,
    output reg  [31:0] out,
    output reg         out_valid,
    output reg         done
);
    localparam FETCH = 2'd0, EXECUTE = 2'd1, WRITE = 2'd2;
    reg [1:0] state;
    reg [9:0] pc;
    wire [15:0] instruction;
    wire [3:0]  operation = instruction[15:12];
    wire [31:0] a, b, d, alu_result, loaded;
    reg  [31:0] result;
    reg         taken;

    processor_program code (.clk(clk), .write(load), .write_address(load_address), .write_data(load_data),
                               .address(pc), .data(instruction));
    processor_registers registers (.clk(clk), .write(state == WRITE && operation < 4'd11),
                                   .destination(instruction[11:8]), .data(operation == 4'd10 ? loaded : result),
                                   .first(instruction[7:4]), .second(instruction[3:0]), .third(instruction[11:8]),
                                   .a(a), .b(b), .d(d));
    processor_alu alu (.operation(operation), .a(a), .b(b), .d(d), .constant(instruction[7:0]), .result(alu_result));
    processor_memory memory (.clk(clk), .write(state == EXECUTE && operation == 4'd11), .address(a[9:0]),
                             .write_data(d), .data(loaded));

    always @(posedge clk)
        if (reset) begin
            state <= FETCH;
            pc <= 10'd0;
            out_valid <= 1'b0;
            done <= 1'b0;
        end else if (!load) begin
            out_valid <= 1'b0;
            done <= 1'b0;
            case (state)
                FETCH: state <= EXECUTE;
                EXECUTE: begin
                    state <= WRITE;
                    result <= alu_result;
                    taken <= operation == 4'd12 ? d != 32'd0 : operation == 4'd13;
                end
                default: begin
                    state <= FETCH;
                    pc <= taken ? pc + {{2{instruction[7]}}, instruction[7:0]} : pc + 10'd1;
                    if (operation == 4'd14) begin
                        out <= d;
                        out_valid <= 1'b1;
                    end
                    if (operation == 4'd15) begin // from the start again
                        done <= 1'b1;
                        pc <= 10'd0;
                    end
                end
            endcase
        end
endmodule

module processor_program (
    input  wire        clk,
    input  wire        write,
    input  wire [9:0]  write_address,
    input  wire [15:0] write_data,
    input  wire [9:0]  address,
    output reg  [15:0] data
);
    reg [15:0] words [0:1023];
    always @(posedge clk) begin
        if (write)
            words[write_address] <= write_data;
        data <= words[address];
    end
endmodule

module processor_memory (
    input  wire        clk,
    input  wire        write,
    input  wire [9:0]  address,
    input  wire [31:0] write_data,
    output reg  [31:0] data
);
    reg [31:0] words [0:1023];
    always @(posedge clk) begin
        if (write)
            words[address] <= write_data;
        data <= words[address];
    end
endmodule

module processor_registers (
    input  wire        clk,
    input  wire        write,
    input  wire [3:0]  destination,
    input  wire [31:0] data,
    input  wire [3:0]  first,
    input  wire [3:0]  second,
    input  wire [3:0]  third,
    output wire [31:0] a,
    output wire [31:0] b,
    output wire [31:0] d
);
    reg [31:0] words [0:15];
    assign a = words[first];
    assign b = words[second];
    assign d = words[third];
    always @(posedge clk)
        if (write)
            words[destination] <= data;
endmodule

module processor_alu (
    input  wire [3:0]  operation,
    input  wire [31:0] a,
    input  wire [31:0] b,
    input  wire [31:0] d,
    input  wire [7:0]  constant,
    output reg  [31:0] result
);
    always @*
        case (operation)
            4'd0: result = {24'd0, constant};
            4'd1: result = {d[23:0], constant};
            4'd2: result = a + b;
            4'd3: result = a - b;
            4'd4: result = a & b;
            4'd5: result = a | b;
            4'd6: result = a ^ b;
            4'd7: result = a[15:0] * b[15:0];
            4'd8: result = a << b[4:0];
            4'd9: result = a >> b[4:0];
            default: result = 32'd0;
        endcase
endmodule
