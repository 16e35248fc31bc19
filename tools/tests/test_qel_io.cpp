// qel run as a child process, where users met trouble: input from pipes,
// standard output that cannot be written, a full disk, a signal in the middle
// of the work, and bytes from files that a terminal would interpret.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <glob.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "ScratchDir.h"

namespace {

namespace fs = std::filesystem;

const std::string kExample = std::string(QEL_SOURCE_DIR) + "/examples/session.json";

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// The names in a folder, sorted.
std::set<std::string> listing(const std::string& folder) {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

bool anyMatches(const std::string& pattern) {
    glob_t found{};
    const bool matched = ::glob(pattern.c_str(), 0, nullptr, &found) == 0 && found.gl_pathc > 0;
    ::globfree(&found);
    return matched;
}

struct Outcome {
    int status = -1; // the exit status; -1 when a signal ended it
    int signal = 0;  // the signal that ended it
    std::string out;
    std::string err;
};

// How qel is started. Standard output and error are kept in files unless
// said otherwise.
struct Launch {
    explicit Launch(std::vector<std::string> arguments) : args(std::move(arguments)) {}
    // Standard input: these bytes through a pipe, then closed.
    Launch& piping(std::string bytes) { return input = std::move(bytes), *this; }
    // Standard input: a pipe kept open and never written.
    Launch& holdingInput() { return holdInput = true, *this; }
    // Standard output to this file (/dev/full).
    Launch& writingTo(std::string file) { return output = std::move(file), *this; }
    // Standard output: a pipe that is never read.
    Launch& blockingOutput() { return blockOutput = true, *this; }
    // RLIMIT_FSIZE, with SIGXFSZ ignored: writes past it fail with EFBIG.
    Launch& limitingFiles(long long bytes) { return fileSizeLimit = bytes, *this; }
    Launch& in(std::string folder) { return directory = std::move(folder), *this; }

    std::vector<std::string> args;
    std::string input;
    bool holdInput = false;
    std::string output;
    bool blockOutput = false;
    long long fileSizeLimit = 0;
    std::string tmpdir;
    std::string directory;
};

class QelProcess {
public:
    // Standard output and error are kept in `capture` + "stdout" / "stderr".
    QelProcess(const Launch& launch, const std::string& capture)
        : _outPath(capture + "stdout"), _errPath(capture + "stderr") {
        int input[2] = {-1, -1};
        int output[2] = {-1, -1};
        const bool pipedInput = launch.holdInput || !launch.input.empty();
        if (pipedInput && ::pipe(input) != 0) ADD_FAILURE() << "pipe";
        if (launch.blockOutput && ::pipe(output) != 0) ADD_FAILURE() << "pipe";
        const std::string outPath = launch.output.empty() ? _outPath : launch.output;
        _pid = ::fork();
        if (_pid == 0) {
            // The child: only calls that are safe after fork until exec.
            const int in = pipedInput ? input[0] : ::open("/dev/null", O_RDONLY);
            const int out =
                launch.blockOutput ? output[1] : ::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            const int err = ::open(_errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (in < 0 || out < 0 || err < 0) ::_exit(125);
            ::dup2(in, 0);
            ::dup2(out, 1);
            ::dup2(err, 2);
            for (int fd : {input[1], output[0]})
                if (fd >= 0) ::close(fd);
            for (int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) ::signal(number, SIG_DFL);
            if (launch.fileSizeLimit > 0) {
                const auto bytes = static_cast<rlim_t>(launch.fileSizeLimit);
                const rlimit limit{bytes, bytes};
                ::setrlimit(RLIMIT_FSIZE, &limit);
                ::signal(SIGXFSZ, SIG_IGN);
            }
            if (!launch.tmpdir.empty()) ::setenv("TMPDIR", launch.tmpdir.c_str(), 1);
            if (!launch.directory.empty() && ::chdir(launch.directory.c_str()) != 0) ::_exit(125);
            std::vector<char*> argv;
            argv.push_back(const_cast<char*>(QEL_PROGRAM));
            for (const std::string& arg : launch.args) argv.push_back(const_cast<char*>(arg.c_str()));
            argv.push_back(nullptr);
            ::execv(QEL_PROGRAM, argv.data());
            ::_exit(127);
        }
        if (input[0] >= 0) ::close(input[0]);
        if (output[1] >= 0) ::close(output[1]);
        _heldOutput = output[0];
        _input = input[1];
        // qel copies standard input whole before anything else, so the pipe
        // is written to its end without reading the child's output.
        if (!launch.input.empty()) {
            size_t done = 0;
            while (done < launch.input.size()) {
                const ssize_t n = ::write(_input, launch.input.data() + done, launch.input.size() - done);
                if (n <= 0) break;
                done += static_cast<size_t>(n);
            }
        }
        if (!launch.holdInput && _input >= 0) {
            ::close(_input);
            _input = -1;
        }
    }

    ~QelProcess() {
        if (_pid > 0 && !_reaped) {
            ::kill(_pid, SIGKILL);
            wait();
        }
        for (int fd : {_input, _heldOutput})
            if (fd >= 0) ::close(fd);
    }

    void signal(int number) { ::kill(_pid, number); }

    bool running() {
        if (_reaped) return false;
        const pid_t done = ::waitpid(_pid, &_rawStatus, WNOHANG);
        if (done == _pid) _reaped = true;
        return !_reaped;
    }

    Outcome wait() {
        if (!_reaped && ::waitpid(_pid, &_rawStatus, 0) == _pid) _reaped = true;
        Outcome outcome;
        if (WIFEXITED(_rawStatus)) outcome.status = WEXITSTATUS(_rawStatus);
        if (WIFSIGNALED(_rawStatus)) outcome.signal = WTERMSIG(_rawStatus);
        outcome.out = readFile(_outPath);
        outcome.err = readFile(_errPath);
        return outcome;
    }

    // Until a path matches `pattern` (true), or the process ends (false).
    bool waitFor(const std::string& pattern) {
        // A bound for a stuck run, not a measure: sanitized runs are slow.
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::minutes(5);
        while (running() && std::chrono::steady_clock::now() < giveUp) {
            if (anyMatches(pattern)) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

private:
    std::string _outPath;
    std::string _errPath;
    pid_t _pid = -1;
    int _input = -1;
    int _heldOutput = -1;
    int _rawStatus = 0;
    bool _reaped = false;
};

std::string shown(const Launch& launch, const Outcome& outcome) {
    std::ostringstream text;
    text << "qel";
    for (const std::string& arg : launch.args) text << ' ' << arg;
    text << "\nexit status " << outcome.status << ", signal " << outcome.signal << "\nstderr:\n" << outcome.err;
    return text.str();
}

// Every line of standard error is one diagnostic: "qel: " and printable ASCII.
void expectDiagnostics(const std::string& err) {
    std::istringstream lines(err);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.rfind("qel: ", 0), 0u) << line;
        for (unsigned char c : line) EXPECT_TRUE(c >= 0x20 && c < 0x7F) << "byte " << int(c) << " in " << line;
    }
}

class QelIoTest : public ::testing::Test {
protected:
    void SetUp() override {
        // A qel that stops reading its pipe must fail the test, not end it.
        ::signal(SIGPIPE, SIG_IGN);
        dir = qeltest::scratchDir() + ::testing::UnitTest::GetInstance()->current_test_info()->name();
        fs::remove_all(dir);
        fs::create_directories(dir + "/tmp");
        tmpdir = dir + "/tmp";
    }
    void TearDown() override {
        fs::remove_all(dir);
        fs::remove(capture() + "stdout");
        fs::remove(capture() + "stderr");
    }

    std::string capture() const { return dir + "."; }
    Outcome run(Launch launch) {
        if (launch.tmpdir.empty()) launch.tmpdir = tmpdir;
        QelProcess process(launch, capture());
        return process.wait();
    }
    // The description and the answer of the bundled example, as files.
    void describeAndAnswer() {
        ASSERT_EQ(run(Launch({"describe", kExample, "-o", description})).status, 0);
        ASSERT_EQ(run(Launch({"answer", description, "-o", answer})).status, 0);
    }
    std::string path(const std::string& name) const { return dir + "/" + name; }

    std::string dir;
    std::string tmpdir;
    const std::string description = qeltest::scratchDir() + "io-description.xml";
    const std::string answer = qeltest::scratchDir() + "io-answer.xml";
};

// ---- standard input ---------------------------------------------------------------------

TEST_F(QelIoTest, PipedInputGivesWhatTheFileGives) {
    describeAndAnswer();
    struct Case {
        std::vector<std::string> fromFile;
        std::vector<std::string> fromPipe;
        std::string piped; // the file whose bytes go to the pipe
    };
    const Case cases[] = {
        {{"apply", kExample, answer}, {"apply", kExample, "-"}, answer},
        {{"apply", kExample, answer}, {"apply", kExample, "/dev/stdin"}, answer},
        {{"apply", kExample, answer}, {"apply", "-", answer}, kExample},
        {{"answer", description, "-o", "-"}, {"answer", "-", "-o", "-"}, description},
        {{"answer", description, "-o", "-"}, {"answer", "/dev/stdin", "-o", "-"}, description},
        {{"describe", kExample, "-o", "-"}, {"describe", "-", "-o", "-"}, kExample},
        {{"tree", kExample}, {"tree", "-"}, kExample},
        {{"check", answer}, {"check", "-"}, answer},
    };
    for (const Case& c : cases) {
        const Outcome expected = run(Launch(c.fromFile));
        const Launch piped = Launch(c.fromPipe).piping(readFile(c.piped));
        const Outcome outcome = run(piped);
        ASSERT_EQ(expected.status, 0) << shown(Launch(c.fromFile), expected);
        EXPECT_EQ(outcome.status, 0) << shown(piped, outcome);
        // check names what it read; nothing else may differ.
        std::string wanted = expected.out;
        for (size_t at; (at = wanted.find(c.piped)) != std::string::npos;)
            wanted.replace(at, c.piped.size(), "standard input");
        EXPECT_EQ(outcome.out, wanted) << shown(piped, outcome);
        EXPECT_TRUE(listing(tmpdir).empty()) << "the copy of standard input is left behind";
    }
}

// ---- standard output and full disks -----------------------------------------------------

TEST_F(QelIoTest, StandardOutputThatCannotBeWrittenFailsWithTheReason) {
    describeAndAnswer();
    const std::vector<std::string> commands[] = {
        {"check", answer},
        {"apply", kExample, answer},
        {"roundtrip", kExample},
        {"tree", kExample},
        {"answer", description, "-o", "-"},
        {"describe", kExample, "-o", "-"},
        {"generate", "--occurrences", "50"},
        {"--help"},
    };
    for (const std::vector<std::string>& args : commands) {
        const Launch launch = Launch(args).writingTo("/dev/full");
        const Outcome outcome = run(launch);
        EXPECT_EQ(outcome.status, 1) << shown(launch, outcome);
        EXPECT_NE(outcome.err.find("qel: standard output: cannot be written: No space left on device\n"),
                  std::string::npos)
            << shown(launch, outcome);
        expectDiagnostics(outcome.err);
        EXPECT_TRUE(listing(tmpdir).empty());
    }
}

TEST_F(QelIoTest, FullDiskLeavesTheTargetAsItWas) {
    describeAndAnswer();
    struct Case {
        std::vector<std::string> args; // writing "out" in the test's folder
        std::string target;
    };
    const Case cases[] = {
        {{"describe", kExample, "-o", "out"}, "out"},
        {{"answer", description, "-o", "out"}, "out"},
        {{"generate", "--occurrences", "200", "-o", "out"}, "out"},
        {{"roundtrip", kExample, "--keep", "out"}, "out/description.xml"},
        {{"generate", "-o", "/dev/full"}, ""},
    };
    for (const Case& c : cases) {
        for (const bool existed : {false, true}) {
            if (c.target.empty() && existed) continue;
            fs::remove_all(path("out"));
            if (c.target.rfind("out/", 0) == 0) fs::create_directory(path("out"));
            if (existed) writeFile(path(c.target), "old");
            const std::set<std::string> before = listing(dir);
            const Launch launch = Launch(c.args).limitingFiles(4096).in(dir);
            const Outcome outcome = run(launch);
            EXPECT_EQ(outcome.status, 1) << shown(launch, outcome);
            const char* reason = c.target.empty() ? "No space left on device" : "File too large";
            EXPECT_NE(outcome.err.find(": cannot be written: " + std::string(reason)), std::string::npos)
                << shown(launch, outcome);
            expectDiagnostics(outcome.err);
            if (c.target.empty()) continue;
            EXPECT_EQ(fs::exists(path(c.target)), existed) << shown(launch, outcome);
            EXPECT_EQ(existed ? readFile(path(c.target)) : "", existed ? "old" : "");
            EXPECT_EQ(listing(dir), before) << "a temporary file is left behind: " << shown(launch, outcome);
            const bool folder = fs::is_directory(path("out"));
            EXPECT_EQ(folder ? listing(path("out")).size() : 0u, folder && existed ? 1u : 0u) << shown(launch, outcome);
        }
    }
}

// ---- signals ----------------------------------------------------------------------------

TEST_F(QelIoTest, SignalsLeaveNoTemporaryFileBehind) {
    const std::string session = path("large.json");
    ASSERT_EQ(run(Launch({"generate", "--occurrences", "20000", "-o", session})).status, 0);
    struct Case {
        int signal;
        Launch launch;
        std::vector<std::string> waitFor; // patterns, relative to the test's folder
    };
    // Standard output is a pipe nobody reads and standard input one nobody
    // writes: the work cannot end before the signal comes.
    const Case cases[] = {
        {SIGINT, Launch({"roundtrip", session}).blockingOutput(), {"tmp/qel-*/description.xml"}},
        {SIGTERM, Launch({"roundtrip", session}).blockingOutput(), {"tmp/qel-*/answer.xml"}},
        {SIGHUP, Launch({"describe", "-", "-o", "out.xml"}).holdingInput(), {".out.xml.qel-*", "tmp/qel-input-*"}},
    };
    for (const Case& c : cases) {
        Launch launch = c.launch;
        launch.tmpdir = tmpdir;
        launch.directory = dir;
        QelProcess process(launch, capture());
        for (const std::string& pattern : c.waitFor)
            ASSERT_TRUE(process.waitFor(dir + "/" + pattern)) << pattern << "\n" << shown(launch, process.wait());
        process.signal(c.signal);
        const Outcome outcome = process.wait();
        EXPECT_EQ(outcome.signal, c.signal) << shown(launch, outcome);
        EXPECT_TRUE(listing(tmpdir).empty()) << shown(launch, outcome);
        EXPECT_EQ(listing(dir), (std::set<std::string>{"large.json", "tmp"}))
            << shown(launch, outcome);
    }
}

// ---- bytes from files -------------------------------------------------------------------

TEST_F(QelIoTest, BytesFromFilesReachTheTerminalEscaped) {
    // A name and a line that would colour the terminal, a byte of Latin-1,
    // a session value that would clear the screen, one of UTF-8.
    const std::string red = "red\x1b[1m.xml";
    writeFile(path(red), "<?xml version=\"1.0\" ?>\r\n<DESCFILE>\r\n\x1b[31mred\xe9\r\n");
    writeFile(path("session.json"),
              "{\"format\": \"qel-session/1\", \"documents\": [{\"name\": \"a\", \"type\": \"\\u001b[2J\xc3\xa9\"}]}");
    const std::string redShown = "red\\x1b[1m.xml:3: ";
    const std::string lineShown = "a value line directly under <DESCFILE>: \"\\x1b[31mred\\xe9\"";
    struct Case {
        std::vector<std::string> args;
        int status;
        std::string out; // what standard output must hold
        std::string err; // what standard error must hold
    };
    const Case cases[] = {
        {{"check", red}, 1, redShown + lineShown, "qel: red\\x1b[1m.xml: 3 problems"},
        {{"apply", kExample, red}, 2, "", "qel: " + redShown + lineShown},
        {{"answer", red, "-o", "never.xml"}, 2, "", "qel: " + redShown + "expected an element under <DESCFILE>"},
        {{"tree", "session.json"}, 2, "", "unknown document type \"\\x1b[2J\\xc3\\xa9\""},
    };
    for (const Case& c : cases) {
        const Launch launch = Launch(c.args).in(dir);
        const Outcome outcome = run(launch);
        EXPECT_EQ(outcome.status, c.status) << shown(launch, outcome);
        EXPECT_NE(outcome.out.find(c.out), std::string::npos) << outcome.out;
        EXPECT_NE(outcome.err.find(c.err), std::string::npos) << shown(launch, outcome);
        expectDiagnostics(outcome.err);
        for (unsigned char byte : outcome.out)
            EXPECT_TRUE(byte == '\n' || (byte >= 0x20 && byte < 0x7F)) << outcome.out;
    }
}

} // namespace
