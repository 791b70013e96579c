#include "Designs.h"
#include "Tool.h"

#include "host/base/Json.h"
#include "host/exchange/Activity.h"

#include <fmt/format.h>

#include <fstream>
#include <map>
#include <random>
#include <sstream>

namespace zelm::test::activityTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

/// Counts of all nets by their paths.
std::map<std::string, NetCount> countsOf(const std::string& file, const DumpWindow& window = {})
{
    const std::unique_ptr<Dump> dump = openDump(file);
    ScopeTree tree = dump->scopes();
    std::map<std::string, std::vector<std::uint32_t>> nets;
    const DumpCounts counts = dump->count(tree, window, [&](const DumpVariable& variable) {
        if (variable.isNet)
            nets[tree.path(variable.scope) + "." + std::string(variable.name)].push_back(variable.net);
        return variable.isNet;
    });
    std::map<std::string, NetCount> byName;
    for (const auto& [name, parts] : nets) {
        NetCount sum;
        sum.bits = 0;
        for (const std::uint32_t net : parts) {
            sum.bits += counts.nets[net].bits;
            sum.toggles += counts.nets[net].toggles;
            sum.high += counts.nets[net].high;
            sum.known += counts.nets[net].known;
        }
        byName[name] = sum;
    }
    return byName;
}

std::string shownCount(const NetCount& count)
{
    return fmt::format("{} bits, {} toggles, {} high, {} known", count.bits, count.toggles, count.high, count.known);
}

std::string saidOfDump(const std::string& text)
{
    const Scratch scratch;
    const std::string file = scratch.write("run.dump", text);
    try {
        countsOf(file);
    } catch (const Error& error) {
        const std::string message = error.what();
        return message.substr(message.find("run.dump"));
    }
    return "no error";
}

// Two modules that share a net, a vector, a real, an escaped name, a dump that is off for a while.
const std::string kVcd = R"($date today $end
$version by hand $end
$timescale 1 ns $end
$scope module tb $end
$var real 64 r level $end
$var parameter 8 p WIDTH $end
$scope module dut $end
$var wire 1 ! clk $end
$var reg 4 " q [3:0] $end
$scope module \odd.name $end
$var wire 1 ! c $end
$var wire 1 # \net[0].x $end
$scope begin $end
$upscope $end
$upscope $end
$upscope $end
$upscope $end
$enddefinitions $end
$dumpvars
0!
bx "
r1.5 r
x#
b101 p
$end
#10
1!
b0 "
0#
#20
0!
b11 "
#30
1!
b1x10 "
1#
#40
$dumpoff
x!
bx "
x#
$end
#60
$dumpon
0!
b1111 "
z#
$end
#70
1!
b1 "
$comment 1! is no change here $end
#80
)";

TEST(Activity, CountsOfAValueChangeDumpAreThoseByHand)
{
    const Scratch scratch;
    const std::string file = scratch.write("a.vcd", kVcd);
    const std::map<std::string, NetCount> counts = countsOf(file);
    ASSERT_EQ(counts.size(), 4u);
    // 0, 1 at 10, 0 at 20, 1 at 30, x from 40 to 60, 0, 1 at 70.
    EXPECT_EQ(shownCount(counts.at("tb.dut.clk")), "1 bits, 4 toggles, 30 high, 60 known");
    EXPECT_EQ(shownCount(counts.at("tb.dut.odd.name.c")), "1 bits, 4 toggles, 30 high, 60 known");
    // 0000 at 10, 0011 at 20 (2), 1x10 at 30 (bit 3 rises, bit 0 falls: 2), x at 40, 1111 at 60, 0001 at 70 (3).
    // High: 2 x 10, 2 x 10, 4 x 10, 1 x 10. Known: 4 x 10, 4 x 10, 3 x 10, 4 x 20.
    EXPECT_EQ(shownCount(counts.at("tb.dut.q")), "4 bits, 7 toggles, 90 high, 190 known");
    // 0 at 10, 1 at 30, x, z.
    EXPECT_EQ(shownCount(counts.at("tb.dut.odd.name.net[0].x")), "1 bits, 1 toggles, 10 high, 30 known");
    // From 20 on, before 40: what changes at 20 counts, what changes at 40 doesn't.
    const std::map<std::string, NetCount> part = countsOf(file, {20, 40});
    EXPECT_EQ(shownCount(part.at("tb.dut.clk")), "1 bits, 2 toggles, 10 high, 20 known");
    EXPECT_EQ(shownCount(part.at("tb.dut.q")), "4 bits, 4 toggles, 40 high, 70 known");
}

const std::string kSaif = R"(/** by hand **/
(SAIFILE
(SAIFVERSION "2.0")
(DIRECTION "backward")
(DESIGN "tb")
(DIVIDER / )
(TIMESCALE 1 ps)
(DURATION 1000.00)
(INSTANCE tb // the bench
  (INSTANCE "fir" dut
    (NET
      (clk (T0 500) (T1 500) (TX 0) (TC 20) (IG 0))
      (q\[0\] (T0 250) (T1 750) (TX 0) (TC 6))
      (q\[1\] (T0 100) (T1 300) (TX 600) (TC 4))
    )
    (INSTANCE sub (PORT (en (T0 900) (T1 100) (TC 2)))))
))
)";

TEST(Activity, CountsOfSwitchingActivityAreThoseInTheFile)
{
    const Scratch scratch;
    const std::map<std::string, NetCount> counts = countsOf(scratch.write("a.saif", kSaif));
    ASSERT_EQ(counts.size(), 3u);
    EXPECT_EQ(shownCount(counts.at("tb.dut.clk")), "1 bits, 20 toggles, 500 high, 1000 known");
    EXPECT_EQ(shownCount(counts.at("tb.dut.q")), "2 bits, 10 toggles, 1050 high, 1400 known");
    EXPECT_EQ(shownCount(counts.at("tb.dut.sub.en")), "1 bits, 2 toggles, 100 high, 1000 known");
}

std::string shell(const Scratch& scratch, const std::string& command)
{
    const std::string redirected = "{ " + command + "; } >'" + scratch.path("shell") + "' 2>&1";
    if (std::system(redirected.c_str()) != 0)
        throw std::runtime_error(command + ": " + Scratch::read(scratch.path("shell")));
    return Scratch::read(scratch.path("shell"));
}

bool has(const char* program)
{
    return std::system(("command -v " + std::string(program) + " >/dev/null 2>&1").c_str()) == 0;
}

// Held against the counting program, which knows nothing of ours.
void expectSameCounts(const Scratch& scratch, const std::string& file, const DumpWindow& window = {})
{
    std::string command = "python3 '" ZELM_SOURCE_DIR "/tests/host/count_toggles.py' '" + file + "'";
    if (window.from > 0 || window.to != DumpWindow().to)
        command += fmt::format(" {} {}", window.from, window.to);
    std::map<std::string, NetCount> expected;
    std::istringstream lines(shell(scratch, command));
    std::string name;
    NetCount count;
    while (lines >> name >> count.bits >> count.toggles >> count.high >> count.known) {
        NetCount& sum = expected.try_emplace(name, NetCount{0, 0.0, 0.0, 0.0}).first->second;
        sum.bits += count.bits;
        sum.toggles += count.toggles;
        sum.high += count.high;
        sum.known += count.known;
    }
    const std::map<std::string, NetCount> counts = countsOf(file, window);
    EXPECT_GT(counts.size(), 3u);
    EXPECT_EQ(counts.size(), expected.size());
    for (const auto& [net, is] : counts)
        EXPECT_EQ(shownCount(is), shownCount(expected[net])) << net << " of " << file;
}

// Codes of one to four characters, vectors of many widths, cut digits, x and z.
std::string randomVcd(unsigned seed)
{
    std::mt19937 random(seed);
    const auto below = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
    constexpr unsigned variables = 60;
    constexpr unsigned widths[] = {1, 1, 2, 7, 63, 64, 65, 128, 200};
    std::vector<unsigned> bits;
    std::string text = "$timescale 10ps $end\n$scope module t $end\n";
    const auto code = [](unsigned i) { return std::string(1 + i % 10, static_cast<char>('!' + i)); };
    for (unsigned i = 0; i < variables; ++i) {
        bits.push_back(widths[below(9)]);
        text += fmt::format("$var wire {} {} n{} $end\n", bits.back(), code(i), i);
    }
    text += "$upscope $end\n$enddefinitions $end\n";
    for (unsigned time = 0; time < 3000; time += 1 + below(20)) {
        text += fmt::format("#{}\n", time);
        for (unsigned k = below(12); k > 0; --k) {
            const unsigned i = below(variables);
            std::string digits;
            for (unsigned n = 1 + below(bits[i]); n > 0; --n)
                digits += "0101010xz1"[below(10)];
            text += bits[i] == 1 ? digits.substr(0, 1) + code(i) + "\n" : "b" + digits + " " + code(i) + "\n";
        }
    }
    return text;
}

TEST(Activity, TogglesAreThoseOfACountingProgram)
{
    if (!has("python3"))
        GTEST_SKIP() << "python3 isn't installed (Debian's package python3)";
    const Scratch scratch;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        const std::string file = scratch.write("r.vcd", randomVcd(seed));
        expectSameCounts(scratch, file);
        expectSameCounts(scratch, file, {700, 1900});
    }
    expectSameCounts(scratch, scratch.write("a.vcd", kVcd));
}

const char* const kVerilog = R"(`timescale 1ns/1ps
module acc(input clk, input en, input [7:0] d, output reg [69:0] q);
  wire \odd[3] = q[3];
  genvar i;
  generate for (i = 0; i < 2; i = i + 1) begin : lane
    reg [3:0] n;
    initial n = 0;
    always @(posedge clk) n <= n + i + 1;
  end endgenerate
  initial q = 0;
  always @(posedge clk) if (en) q <= {q[61:0], d} ^ q;
endmodule
module tb;
  reg clk = 0, en = 0; reg [7:0] d = 8'bx; real level = 0.5; wire [69:0] q; tri t = en ? 1'bz : d[0];
  acc dut(clk, en, d, q);
  always #5 clk = ~clk;
  integer k;
  initial begin
    $dumpfile("run.vcd"); $dumpvars(0, tb);
    for (k = 0; k < 200; k = k + 1) begin
      @(negedge clk); d = $random; en = (k % 4) != 0; level = level + 0.25;
      if (k == 90) $dumpoff;
      if (k == 120) $dumpon;
    end
    $finish;
  end
endmodule
)";

TEST(Activity, OfASimulatorIsThatOfACountingProgram)
{
    if (!has("python3") || !has("iverilog"))
        GTEST_SKIP() << "iverilog or python3 isn't installed (Debian's packages of those names)";
    const Scratch scratch;
    scratch.write("tb.v", kVerilog);
    shell(scratch, "cd '" + scratch.path("") + "' && iverilog -g2012 -o tb tb.v && vvp -n tb");
    expectSameCounts(scratch, scratch.path("run.vcd"));
    expectSameCounts(scratch, scratch.path("run.vcd"), {333000, 777000});
}

const char* const kDesign = R"({"groups": [
    {"block": "Clock", "name": "clk", "inputs": {"CLOCK_FREQ": 50}},
    {"block": "CleLogic", "name": "top registers", "clock": "clk"},
    {"block": "Signal", "name": "odd nets", "in": "odd.name", "clock": "clk", "inputs": {"TOGGLE_RATE": 0.5}},
    {"block": "Bram", "name": "ram", "in": "nowhere", "clock": "clk"},
    {"block": "Selv", "name": "pads"},
    {"block": "Signal", "name": "sub nets", "in": "dut.sub", "clock": "clk"}]})";

TEST(Activity, RatesAreRelativeToTheGroupsClock)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string dump = scratch.write("a.vcd", kVcd);
    const std::string made = scratch.path("made.json");
    const ToolRun run =
        scratch.run("import activity " + dump + " --design " + design + " --scope tb.dut -o " + made + " --json");
    ASSERT_EQ(run.code, 0) << run.err;
    const Json json = Json::parse(run.out);
    EXPECT_EQ(json.at("scope"), "tb.dut");
    EXPECT_NEAR(json.at("seconds").get<double>(), 80e-9, 1e-18);
    EXPECT_EQ(json.at("nets"), 3); // the clock under two names, q, the odd one
    const Json& top = json.at("groups")[1];
    EXPECT_EQ(top.at("toggles"), 7);
    EXPECT_EQ(top.at("bits"), 4);
    EXPECT_EQ(top.at("cycles"), 2.0); // 4 edges
    EXPECT_EQ(top.at("clock"), "edges in the dump");
    const Design after = readDesign(made);
    // 7 toggles of 4 bits in 2 cycles; 1 of 1 in 2.
    EXPECT_EQ(std::get<float>(*after.groups[1].input("TOGGLE_RATE")), 0.875f);
    EXPECT_EQ(std::get<float>(*after.groups[2].input("TOGGLE_RATE")), 0.5f);
    EXPECT_EQ(after.groups[3].inputs.size(), 0u);
    EXPECT_EQ(json.at("groups")[3].at("note"), "the dump has no scope nowhere");
    EXPECT_THAT(json.at("groups")[3].at("kept").dump(), HasSubstr("PORT_A_ENABLE_RATE"));
}

TEST(Activity, AClockThatIsNotInTheDumpIsTheDesigns)
{
    const Scratch scratch;
    std::string text = kDesign;
    for (std::size_t at = text.find("\"clk\""); at != std::string::npos; at = text.find("\"clk\""))
        text.replace(at, 5, "\"core\"");
    const std::string design = scratch.write("d.json", text);
    const ActivityImport result =
        importActivity({scratch.write("a.vcd", kVcd), design, "tb.dut", std::nullopt, "20 ns", "40"});
    // 50 MHz for 20 ns are 1 cycle; the net that toggles twice in it is a clock.
    EXPECT_NEAR(result.groups[1].cycles, 1.0, 1e-12);
    EXPECT_EQ(result.groups[1].clock, "50 MHz");
    EXPECT_EQ(result.groups[1].toggles, 4.0);
}

TEST(Activity, AMapTellsScopesAndSignals)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string dump = scratch.write("a.saif", kSaif);
    const std::string map = scratch.write("map.json", R"({"ram": {"scope": "dut.sub", "clock": "tb.dut.clk",
        "inputs": {"PORT_A_ENABLE_RATE": "dut.sub.en", "PORT_B_ENABLE_RATE": "!tb.dut.sub.en", "TOGGLE_RATE_A": ["q"]}},
        "pads": {"signals": ["dut.q"], "clock": "dut.clk", "inputs": {"OUTPUT_ENABLE": "dut.q[1]",
        "TOGGLE_RATE": "dut.q"}}, "clk": {"clock": "dut.clk"}, "top registers": "tb.dut"})");
    const auto imported = [&](const std::string& more) {
        return scratch.run("import activity " + dump + " --design " + design + " --scope tb --map " + map + more);
    };
    std::string text = Scratch::read(map);
    EXPECT_THAT(imported("").err, HasSubstr("ram: q, and " + dump + " has no such signal; did you mean q"));
    text.replace(text.find("[\"q\"]"), 5, "\"dut.q\"");
    scratch.write("map.json", text);
    const ToolRun run = imported("");
    ASSERT_EQ(run.code, 0) << run.err;
    const Design after = parseDesign("made.json", run.out);
    // 20 edges are 10 cycles. 10 toggles of 2 bits in them: 0.5 each cycle, at an access each tenth cycle: 5, held
    // at 1.
    EXPECT_EQ(std::get<float>(*after.groups[3].input("PORT_A_ENABLE_RATE")), 0.1f);
    EXPECT_EQ(std::get<float>(*after.groups[3].input("PORT_B_ENABLE_RATE")), 0.9f);
    EXPECT_EQ(std::get<float>(*after.groups[3].input("TOGGLE_RATE_A")), 1.0f);
    EXPECT_EQ(std::get<float>(*after.groups[4].input("TOGGLE_RATE")), 0.5f);
    EXPECT_EQ(std::get<float>(*after.groups[4].input("OUTPUT_ENABLE")), 0.75f); // 300 of 400 known
    EXPECT_EQ(std::get<float>(*after.groups[5].input("TOGGLE_RATE")), 0.2f);
    text.replace(text.find("dut.q[1]"), 8, "dut.q[2]");
    scratch.write("map.json", text);
    EXPECT_THAT(imported("").err, HasSubstr("pads: dut.q[2], and " + dump + " has no such signal"));
    EXPECT_THAT(imported(" --from 3").err, HasSubstr("--from and --to need a VCD"));
    scratch.write("map.json", R"({"rem": "tb"})");
    EXPECT_THAT(imported("").err, HasSubstr("map.json:1: rem: the design has no group rem; did you mean ram?"));
    scratch.write("map.json", R"({"ram": {"inputs": {"PORT_A_ENABLE_RAT": "x"}}})");
    EXPECT_THAT(imported("").err, HasSubstr("a group of Bram has no input of activity PORT_A_ENABLE_RAT; did you mean "
                                            "PORT_A_ENABLE_RATE"));
    scratch.write("map.json", R"({"ram": "tb.dat"})");
    EXPECT_THAT(imported("").err, HasSubstr("ram: scope tb.dat: " + dump + " has no scope dat; did you mean dut?"));
}

TEST(Activity, ScopesAndFilesThatDontFitAreExplained)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string dump = scratch.write("a.vcd", kVcd);
    const auto said = [&](const std::string& more) {
        return scratch.run("import activity " + dump + " --design " + design + more).err;
    };
    EXPECT_THAT(said(" --scope tb.dat"), HasSubstr("--scope tb.dat: " + dump + " has no scope dat; did you mean dut?"));
    EXPECT_THAT(said(" --from 50 --to 20"), HasSubstr("--from must be before --to"));
    EXPECT_THAT(said(" --from '3 V'"), HasSubstr("is a voltage, expected a time"));
    EXPECT_THAT(said(" --from 90"), HasSubstr("no time passes between --from and --to"));
    EXPECT_THAT(said(" -o " + design), HasSubstr("isn't written over"));
    EXPECT_THAT(scratch.run("import activity " + dump).err, HasSubstr("--design is required"));
    const std::string flat = scratch.write("f.json", R"({"groups": [{"block": "Signal", "in": "other"}]})");
    EXPECT_THAT(scratch.run("import activity " + dump + " --design " + flat).err,
                HasSubstr("none of its scopes is where a group of " + flat));
    EXPECT_THAT(scratch.run("import activity " + design + " --design " + design).err,
                HasSubstr("is neither VCD, which begins with $, nor SAIF, which begins with ("));
    EXPECT_THAT(scratch.run("import activity /dev/null --design " + design).err, HasSubstr("is a device or FIFO"));
}

TEST(Activity, BrokenAndCutDumpsAreExplainedWithTheirLine)
{
    const std::string head = "$scope module t $end\n$var wire 4 ! q $end\n$upscope $end\n";
    const std::string body = head + "$enddefinitions $end\n#0\n";
    const std::pair<std::string, const char*> all[] = {
        {head, "run.dump:4: the file ends in its header: there is no $enddefinitions"},
        {"$comment x", "run.dump:1: the file ends in the $comment of line 1"},
        {"$upscope $end", "run.dump:1: $upscope without a $scope"},
        {"$var wire 4", "run.dump:1: the file ends in the $var of line 1"},
        {"$var wire -4 ! q $end $enddefinitions $end", "run.dump:1: -4 is no size of a variable"},
        {"$var wire 99999999999 ! q $end $enddefinitions $end", "is no size of a variable"},
        {"$var wire 4 $end $enddefinitions $end", "a $var needs a kind, a size, a code and a name"},
        {"$timescale 3 parsec $end", "3parsec is no time scale; expected 1, 10 or 100 of s, ms"},
        {head + "$var wire 5 ! r $end $enddefinitions $end",
         "run.dump:4: r has 5 bits, and 4 under another name of its code !"},
        {head + "garbage", "run.dump:4: expected a $ word of the header, found garbage"},
        {body + "b1010", "run.dump:6: the file ends in a vector: its code is missing"},
        {body + "b102 !\n", "run.dump:6: 2 is no digit of a vector"},
        {body + "b11010 !\n", "run.dump:6: a vector of 5 digits for a variable of 4 bits"},
        {body + "b !\n", "run.dump:6: a vector without digits"},
        {body + "1\n", "run.dump:6: a value without the code of its variable"},
        {body + "1?\n", "run.dump:6: no variable has the code ?"},
        {body + "b1 longer\n", "run.dump:6: no variable has the code longer"},
        {body + "#9\n#8\n", "run.dump:7: time goes back from 9 to 8"},
        {body + "#x\n", "run.dump:6: #x is no time"},
        {body + "$dump\n", "run.dump:6: $dump is no word of value changes"},
        {body + "hello\n", "run.dump:6: hello"},
        {"(SAIFILE (INSTANCE a", "run.dump:1: the file ends within 2 parentheses that are open"},
        {"(SAIFILE (INSTANCE a)))", "run.dump:1: a closing parenthesis too many"},
        {"(OTHER)", "expected (SAIFILE ...), found OTHER"},
        {"(SAIFILE (SAIFVERSION \"1.0\"))", "the version is 1.0, and only 2.0 is read"},
        {"(SAIFILE (DIRECTION \"forward\"))", "the direction is forward, and only backward is read"},
        {"(SAIFILE\n(DURATION x))", "run.dump:2: the DURATION: expected a number from 0, found x"},
        {"(SAIFILE (INSTANCE a (NET (q (TC -3)))))", "TC: expected a number from 0, found -3"},
        {"(SAIFILE ((", "an opening parenthesis without a word"},
        {"(SAIFILE \"x", "the file ends in a text"},
        {"(SAIFILE /* x", "the file ends in a comment"},
        {"\x1f\x8b\x08", "is compressed; unpack it first"},
    };
    for (const auto& [text, message] : all) {
        if (std::string(message).ends_with("hello"))
            EXPECT_THAT(saidOfDump(text), HasSubstr("run.dump:6: no variable has the code ello"));
        else
            EXPECT_THAT(saidOfDump(text), HasSubstr(message)) << text;
    }
}

TEST(Activity, HostileDumpsAreRefusedInBoundedMemory)
{
    std::string scopes;
    for (int i = 0; i < 250000; ++i)
        scopes += fmt::format("$scope module m{} $end $upscope $end\n", i);
    EXPECT_THAT(saidOfDump(scopes), HasSubstr("run.dump:200001: there are more than 200000 scopes"));
    std::string deep;
    for (int i = 0; i < 2000; ++i)
        deep += "$scope module m $end\n";
    EXPECT_THAT(saidOfDump(deep), HasSubstr("run.dump:1001: scopes are more than 1000 deep"));
    EXPECT_THAT(saidOfDump("(SAIFILE " +
                           [] {
                               std::string open;
                               for (int i = 0; i < 10000; ++i)
                                   open += "(X ";
                               return open;
                           }()),
                HasSubstr("parentheses are more than 4000 deep"));
    EXPECT_THAT(saidOfDump("$var wire 1 ! " + std::string(std::size_t{5} << 20, 'x')),
                HasSubstr("run.dump:1: a word is longer than 4 MB"));
    std::string wide = "$scope module t $end\n";
    for (int i = 0; i < 300; ++i)
        wide += fmt::format("$var wire 1048576 c{} n{} $end\n", i, i);
    wide += "$enddefinitions $end\n";
    EXPECT_THAT(saidOfDump(wide), HasSubstr("the variables have more than 200000000 bits"));
}

} // namespace

} // namespace zelm::test::activityTest
