// Takes frames of bytes apart: reads addresses and type of each, counts frames by type in a memory, checks the sum that
// ends a frame, and passes on the content of frames that are meant for this station.
//   frame: destination (1), source (1), type (1), length (1), content (length), sum of all before (1)
module parser (
    input  wire        clk,
    input  wire        reset,
    input  wire [7:0]  station,
    input  wire [7:0]  data,
    input  wire        valid,
    input  wire        start,
    output wire [7:0]  content,
    output wire        content_valid,
    input  wire        content_ready,
    input  wire [7:0]  count_type,
    output wire [15:0] count,
    output wire        frame_good,
    output wire        frame_bad
);
    wire       header, type_valid, pass, last, mine;
    wire [7:0] frame_type;
    parser_state state (.clk(clk), .reset(reset), .station(station), .data(data), .valid(valid), .start(start),
                        .header(header), .type_valid(type_valid), .frame_type(frame_type), .pass(pass), .last(last),
                        .mine(mine));
    parser_sum sum (.clk(clk), .reset(reset), .data(data), .valid(valid), .start(start), .last(last), .good(frame_good),
                    .bad(frame_bad));
    parser_counters counters (.clk(clk), .reset(reset), .frame_type(frame_type), .counted(frame_good),
                              .count_type(count_type), .count(count));
    parser_queue queue (.clk(clk), .reset(reset), .write(pass && mine), .data(data), .out(content),
                        .out_valid(content_valid), .out_ready(content_ready));
endmodule

module parser_state (
    input  wire       clk,
    input  wire       reset,
    input  wire [7:0] station,
    input  wire [7:0] data,
    input  wire       valid,
    input  wire       start,
    output wire       header,
    output wire       type_valid,
    output reg  [7:0] frame_type,
    output wire       pass,
    output wire       last,
    output reg        mine
);
    localparam IDLE = 3'd0, SOURCE = 3'd1, TYPE = 3'd2, LENGTH = 3'd3, CONTENT = 3'd4, SUM = 3'd5;
    reg [2:0] state;
    reg [7:0] left;
    assign header = state == SOURCE || state == TYPE || state == LENGTH;
    assign type_valid = valid && state == TYPE;
    assign pass = valid && !start && state == CONTENT;
    assign last = valid && !start && state == SUM;
    always @(posedge clk)
        if (reset) begin
            state <= IDLE;
            mine <= 1'b0;
            left <= 8'd0;
            frame_type <= 8'd0;
        end else if (valid) begin
            if (start) begin
                state <= SOURCE;
                mine <= data == station || data == 8'hff;
            end else
                case (state)
                    SOURCE: state <= TYPE;
                    TYPE: begin
                        state <= LENGTH;
                        frame_type <= data;
                    end
                    LENGTH: begin
                        state <= data == 8'd0 ? SUM : CONTENT;
                        left <= data;
                    end
                    CONTENT: begin
                        left <= left - 8'd1;
                        if (left == 8'd1)
                            state <= SUM;
                    end
                    default: state <= IDLE;
                endcase
        end
endmodule

module parser_sum (
    input  wire       clk,
    input  wire       reset,
    input  wire [7:0] data,
    input  wire       valid,
    input  wire       start,
    input  wire       last,
    output reg        good,
    output reg        bad
);
    reg [7:0] sum;
    always @(posedge clk) begin
        good <= !reset && last && data == sum;
        bad <= !reset && last && data != sum;
        if (reset)
            sum <= 8'd0;
        else if (valid)
            sum <= start ? data : sum + data;
    end
endmodule

// A count for each type, in a memory: read, add, and write a cycle later.
module parser_counters (
    input  wire        clk,
    input  wire        reset,
    input  wire [7:0]  frame_type,
    input  wire        counted,
    input  wire [7:0]  count_type,
    output reg  [15:0] count
);
    reg [15:0] counts [0:255];
    reg [15:0] previous;
    reg [7:0]  address;
    reg [8:0]  clearing;
    reg        adding;
    wire        clear = !clearing[8];
    wire [7:0]  write_address = clear ? clearing[7:0] : address;
    wire [15:0] write_data = clear ? 16'd0 : previous + 16'd1;
    always @(posedge clk) begin
        clearing <= reset ? 9'd0 : clear ? clearing + 9'd1 : clearing;
        adding <= counted && !clear;
        address <= frame_type;
        previous <= counts[frame_type];
        count <= counts[count_type];
        if (clear || adding)
            counts[write_address] <= write_data;
    end
endmodule

module parser_queue (
    input  wire       clk,
    input  wire       reset,
    input  wire       write,
    input  wire [7:0] data,
    output wire [7:0] out,
    output wire       out_valid,
    input  wire       out_ready
);
    reg [7:0] store [0:31];
    reg [5:0] head, tail;
    wire full = head[4:0] == tail[4:0] && head[5] != tail[5];
    assign out = store[tail[4:0]];
    assign out_valid = head != tail;
    always @(posedge clk) begin
        if (write && !full)
            store[head[4:0]] <= data;
        if (reset) begin
            head <= 6'd0;
            tail <= 6'd0;
        end else begin
            if (write && !full)
                head <= head + 6'd1;
            if (out_valid && out_ready)
                tail <= tail + 6'd1;
        end
    end
endmodule
