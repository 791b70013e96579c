// What becomes of files: read, refused, replaced whole or left alone, also when the run is killed or the disk is full.
#include "Tool.h"

#include "host/base/Error.h"
#include "host/base/Files.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zelm::test::filesTest {

using testing::HasSubstr;
using testing::StartsWith;
using zelm::host::Error;
using zelm::host::readFile;
using zelm::host::writeFile;

namespace {

const std::string kDesign = R"({"name": "small", "groups": [{"block": "Bram"}]})";

std::vector<std::string> namesIn(const std::string& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    return names;
}

// What the action's Error says, or that there is none.
template <class Action>
std::string errorOf(Action action)
{
    try {
        action();
    } catch (const Error& error) {
        return error.what();
    }
    return "no error";
}

TEST(Files, ReadErrorsSayWhichItIs)
{
    const Scratch scratch;
    std::filesystem::create_symlink("circle", scratch.path("circle"));
    std::filesystem::create_symlink("nowhere", scratch.path("dangling"));
    ASSERT_EQ(mkfifo(scratch.path("fifo").c_str(), 0600), 0);
    const std::string empty = scratch.write("empty", "");
    const std::pair<std::string, std::string> rows[] = {
        {"", "the name of the file to read is empty"},
        {scratch.path("none"), "there is no such file"},
        {scratch.path("dangling"), "there is no such file"},
        {empty + "/x", "a part of this path is a file"},
        {scratch.path(""), "is a folder"},
        {scratch.path("circle"), "too many links"},
        {scratch.path(std::string(300, 'x')), "the name is too long"},
        {empty, "is empty"},
        {scratch.path("fifo"), "is empty"}, // nobody writes to it
        {"/dev/null", "is empty"},
        {"/dev/zero", "larger than 256 MB"},
    };
    for (const auto& [file, words] : rows)
        EXPECT_THAT(errorOf([&] { readFile(file); }), HasSubstr(words)) << file;
    if (geteuid() != 0) { // root reads all
        std::filesystem::permissions(empty, std::filesystem::perms::none);
        EXPECT_THAT(errorOf([&] { readFile(empty); }), HasSubstr("permission denied"));
    }
}

TEST(Files, FifosAndStandardInputAreRead)
{
    const Scratch scratch;
    const std::string fifo = scratch.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::string text;
    std::thread reader([&] { text = readFile(fifo); });
    std::ofstream(fifo) << kDesign;
    reader.join();
    EXPECT_EQ(text, kDesign);
    const ToolRun piped = scratch.run("estimate - --csv < " + scratch.write("d.json", kDesign));
    EXPECT_EQ(piped.code, 0) << piped.err;
    EXPECT_THAT(piped.out, HasSubstr("group,,Bram,Bram,1,"));
    EXPECT_THAT(scratch.run("estimate - </dev/null").err, HasSubstr("standard input: is empty"));
}

TEST(Files, WriteErrorsSayWhichItIsAndLeaveNothing)
{
    const Scratch scratch;
    std::filesystem::create_symlink("circle", scratch.path("circle"));
    ASSERT_EQ(mkfifo(scratch.path("fifo").c_str(), 0600), 0);
    const std::string file = scratch.write("file", "old");
    const std::pair<std::string, std::string> rows[] = {
        {"", "the name of the file to write is empty"},
        {"-", "\"-\" is standard input"},
        {scratch.path(""), "is a folder"},
        {scratch.path("none/file"), "there is no such file"},
        {file + "/x", "a part of this path is a file"},
        {scratch.path("circle"), "too many links"},
        {scratch.path("fifo"), "nobody reads from the other end"},
        {"/dev/full", "no space left"},
    };
    for (const auto& [path, words] : rows)
        EXPECT_THAT(errorOf([&] { writeFile(path, "new"); }), HasSubstr(words)) << path;
    EXPECT_THAT(namesIn(scratch.path("")), testing::UnorderedElementsAre("circle", "fifo", "file"));
    EXPECT_EQ(Scratch::read(file), "old");
}

TEST(Files, AReplacedFileKeepsPermissionsAndLinks)
{
    const Scratch scratch;
    const std::string file = scratch.write("file", "a longer old text");
    std::filesystem::permissions(file, std::filesystem::perms(0640));
    std::filesystem::create_directory(scratch.path("folder"));
    std::filesystem::create_symlink("../file", scratch.path("folder/link"));
    std::filesystem::create_symlink("folder/link", scratch.path("link"));
    writeFile(scratch.path("link"), "new");
    EXPECT_EQ(Scratch::read(file), "new");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.path("link")));
    EXPECT_TRUE(std::filesystem::is_symlink(scratch.path("folder/link")));

    std::filesystem::create_symlink("made", scratch.path("dangling"));
    const mode_t before = umask(027);
    writeFile(scratch.path("dangling"), "made");
    umask(before);
    EXPECT_EQ(Scratch::read(scratch.path("made")), "made");
    EXPECT_EQ(std::filesystem::status(scratch.path("made")).permissions(), std::filesystem::perms(0640));
}

TEST(Files, DevicesAndFifosAreWrittenToAsTheyStand)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string fifo = scratch.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    writeFile("/dev/null", "x");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    const std::string large(1 << 20, 'x'); // more than a pipe holds
    std::string got;
    std::thread reader([&] { got = Scratch::read(fifo); });
    while (errorOf([&] { writeFile(fifo, large); }) != "no error")
        std::this_thread::yield(); // until the reader is there
    reader.join();
    EXPECT_EQ(got.size(), large.size());
    EXPECT_TRUE(std::filesystem::is_fifo(fifo));
    // Standard output, whether a pipe or a file: both reports are there.
    for (const std::string to : {" | cat", ""}) {
        const ToolRun result = scratch.run("estimate --csv --junit /dev/stdout " + design + to);
        EXPECT_THAT(result.out, testing::AllOf(HasSubstr("</testsuite>"), HasSubstr("total,"))) << result.err;
    }
}

TEST(Files, NothingThatTheRunReadsIsWrittenOver)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string data = scratch.copyData();
    const std::string table = Scratch::dataFile(data, "Gorb");
    const std::string before = Scratch::read(table);
    std::filesystem::create_symlink("d.json", scratch.path("link"));
    std::filesystem::create_hard_link(design, scratch.path("hard"));
    const std::string estimate = "--datadir " + data + " estimate " + design;
    for (const std::string& report :
         {design, scratch.path("link"), scratch.path("hard"), scratch.path("./d.json"), table}) {
        for (const std::string option : {" --html ", " --junit "}) {
            const ToolRun result = scratch.run(estimate + option + report);
            EXPECT_EQ(result.code, 2) << option << report;
            EXPECT_THAT(result.err, HasSubstr(report + ": this run reads this file")) << option;
        }
    }
    const ToolRun piped = scratch.run("estimate - --html " + design + " < " + design);
    EXPECT_THAT(piped.err, HasSubstr("this run reads this file"));
    EXPECT_EQ(Scratch::read(design), kDesign);
    EXPECT_EQ(Scratch::read(table), before);
    const ToolRun twice = scratch.run(estimate + " --html " + scratch.path("r") + " --junit " + scratch.path("./r"));
    EXPECT_EQ(twice.code, 2);
    EXPECT_THAT(twice.err, HasSubstr("two reports"));
    EXPECT_THAT(scratch.run(estimate + " --html ''").err, HasSubstr("the name of the file to write is empty"));
}

// Runs an action in a process of its own, which ends with 0, or with 3 and no more if it throws an Error.
template <class Action>
pid_t inChild(Action action)
{
    const pid_t child = fork();
    if (child == 0) {
        try {
            action();
        } catch (const Error&) {
            _exit(3);
        }
        _exit(0);
    }
    return child;
}

TEST(Files, AKilledWriterLeavesTheOldFileOrTheNew)
{
    const Scratch scratch;
    const std::string file = scratch.path("report");
    const std::string texts[] = {std::string(1 << 20, 'a'), std::string(1 << 20, 'b')};
    writeFile(file, texts[0]);
    int replaced = 0;
    for (int kill = 0; kill < 25; ++kill) {
        const pid_t child = inChild([&] {
            for (int i = 1;; ++i)
                writeFile(file, texts[i % 2]);
        });
        std::this_thread::sleep_for(std::chrono::microseconds(400 * kill));
        ::kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string now = Scratch::read(file);
        ASSERT_TRUE(now == texts[0] || now == texts[1])
            << "kill " << kill << ": " << now.size() << " bytes, from " << now.substr(0, 1) << " to "
            << (now.empty() ? "" : now.substr(now.size() - 1));
        replaced += now == texts[1] ? 1 : 0;
    }
    EXPECT_GT(replaced, 0) << "no kill fell behind a write: nothing was tried";
    // A file without a name is gone with its writer; it has one of its own only for the instant in which it is moved.
    const int nameless = open(scratch.path("").c_str(), O_TMPFILE | O_WRONLY, 0600);
    EXPECT_LE(namesIn(scratch.path("")).size(), nameless >= 0 ? 2U : 26U);
    close(nameless);
}

TEST(Files, AFullDiskLeavesTheOldFile)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string report = scratch.write("r.html", "old");
    // A limit on the size of files stands for the full disk: the page is larger than 100 blocks of 512 or 1024 bytes.
    const std::string command = "(ulimit -f 100; '" ZELM_TOOL "' estimate '" + design + "' --html '" + report +
                                "') >'" + scratch.path("out") + "' 2>'" + scratch.path("err") + "'";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status)) << status;
    EXPECT_EQ(WEXITSTATUS(status), 2);
    EXPECT_EQ(Scratch::read(scratch.path("err")),
              "zelm: " + report + ": cannot be written: larger than files may be here\n");
    EXPECT_EQ(Scratch::read(report), "old");
    for (const std::string& name : namesIn(scratch.path("")))
        EXPECT_THAT(name, testing::Not(StartsWith(".zelm-")));
}

TEST(Files, ADiskTooSmallLeavesTheOldFile)
{
    const Scratch scratch;
    const std::string disk = scratch.path("disk");
    const std::string file = disk + "/r";
    std::filesystem::create_directory(disk);
    constexpr int cannotMount = 4;
    constexpr int wrong = 5;
    // The small disk is the child's alone, and ends with it.
    const pid_t child = inChild([&] {
        if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0)
            _exit(cannotMount);
        writeFile(file, "old");
        const std::string said = errorOf([&] { writeFile(file, std::string(1 << 20, 'x')); });
        if (said != file + ": cannot be written: no space left" || Scratch::read(file) != "old" ||
            namesIn(disk) != std::vector<std::string>{"r"})
            _exit(wrong);
    });
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status)) << status;
    if (WEXITSTATUS(status) == cannotMount)
        GTEST_SKIP() << "no file system can be mounted here: that needs root";
    EXPECT_EQ(WEXITSTATUS(status), 0) << wrong << ": the message, the old file or its folder isn't as it should be";
}

TEST(Files, ClosedAndFullStreamsDontChangeHowARunEnds)
{
    const Scratch scratch;
    const std::string broken =
        scratch.write("b.json", R"({"groups": [{"block": "Bram"}], "budgets": {"totalPower": 0}})");
    const std::string good = scratch.write("g.json", kDesign);
    const std::string report = scratch.path("r.html");
    const std::string html = " --html " + report;
    const std::pair<std::string, int> rows[] = {
        {"estimate /none 2>&-", 2},
        {"estimate /none 2>/dev/full", 2},
        {"estimate --jsn 2>/dev/full", 2},
        {"estimate --check --csv " + broken + html + " 2>&-", 1},
        {"estimate --check --csv " + broken + html + " 2>/dev/full", 1},
        {"estimate --check " + broken + html + " >/dev/full", 1},
        {"estimate " + good + html + " >/dev/full", 2},
        {"estimate " + good + html + " >&-", 2},
        {"estimate " + good + html + " >/dev/full 2>&-", 2},
        {"estimate " + good + html + " 2>&- <&-", 0},
        {"-v estimate " + good + html + " 2>/dev/full", 0},
    };
    for (const auto& [arguments, code] : rows) {
        std::filesystem::remove(report);
        const std::string command = "( '" ZELM_TOOL "' " + arguments + " ) >/dev/null 2>/dev/null";
        const int status = std::system(command.c_str());
        ASSERT_TRUE(WIFEXITED(status)) << command;
        EXPECT_EQ(WEXITSTATUS(status), code) << command;
        const bool reports = arguments.find(html) != std::string::npos;
        EXPECT_EQ(Scratch::read(report).find("</html>") != std::string::npos, reports) << command;
    }
}

TEST(Files, AGivenTextStandsForAFileOfThisThread)
{
    const Scratch scratch;
    const std::string file = scratch.path("file");
    writeFile(file, "on disk");
    {
        const host::GivenText given(file, "given");
        EXPECT_EQ(readFile(file), "given");
        std::string elsewhere;
        std::thread([&] { elsewhere = readFile(file); }).join();
        EXPECT_EQ(elsewhere, "on disk");
    }
    EXPECT_EQ(readFile(file), "on disk");
}

TEST(Files, AReaderThatHasSeenEnoughIsNoError)
{
    const Scratch scratch;
    const std::string command = "bash -c '\"" ZELM_TOOL "\" schema 2>\"" + scratch.path("err") +
                                "\" | head -c 1 >/dev/null; exit ${PIPESTATUS[0]}'";
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 0);
    EXPECT_EQ(Scratch::read(scratch.path("err")), "");
}

} // namespace

} // namespace zelm::test::filesTest
