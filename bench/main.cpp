// qel_bench: the library's description writer and answer reader measured as
// ratios against the machine's floors and general-purpose XML parsers, on
// generated sessions. scripts/bench.sh runs it and prints the table.
//
//   qel_bench ratios  --occurrences N [--pairs P] [--dir D]
//   qel_bench scaling --small N --large N [--pairs P] [--dir D]
//   qel_bench once    --occurrences N [--dir D]
//   qel_bench census  --occurrences N
//   qel_bench linearity --small N --large N [--pairs P]
//
// Each row printed is tab-separated (see benchPrint); notes go to standard
// error.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <string>

#include <sys/resource.h>

#include "BenchCensus.h"
#include "BenchFloors.h"
#include "BenchLinearity.h"
#include "BenchPairs.h"
#include "CV5CAAToolsDesc.h"
#include "EMHManager.h"
#include "JNLManager.h"
#include "QELAnswerSimulator.h"
#include "QELDMToXML.h"
#include "QELElementNames.h"
#include "QELSession.h"
#include "QELSessionFile.h"
#include "QELXMLToDM.h"
#include "UTILLineFile.h"

namespace {

struct Options {
    std::string mode;
    long occurrences = 100000;
    long small = 10000;
    long large = 1000000;
    int pairs = 11;
    std::string dir = "bench-files";
};

const int kDepth = 6;
const unsigned long kSeed = 1;

[[noreturn]] void fail(const std::string& message) {
    std::fprintf(stderr, "qel_bench: %s\n", message.c_str());
    std::exit(1);
}

// The library keeps its journal and error entries in memory; they are not
// what is measured.
void dropJournal() {
    JNLManager::clear();
    EMHManager::clear();
}

// The generated session of that size, made once per size: a million
// occurrences take seconds to generate, and the scaling pairs build the same
// session again and again.
const std::string& sessionText(long occurrences) {
    static std::map<long, std::string> texts;
    auto found = texts.find(occurrences);
    if (found == texts.end()) found = texts.emplace(occurrences, qelGenerateSession(occurrences, kDepth, kSeed)).first;
    return found->second;
}

// Builds the generated session into the model. The text is made before,
// outside `load`, so that timing and heap figures see the loading alone.
void buildSession(long occurrences, double* seconds = nullptr, long long* heapBytes = nullptr) {
    const std::string& text = sessionText(occurrences);
    QELSessionFileError error;
    dropJournal();
    const long long heapBefore = benchHeapInUse();
    bool built = false;
    const double time = benchTime([&] { built = qelLoadSessionText(text, error); });
    if (!built) fail("the generated session does not load: " + error.message);
    // The journal lines of the build are not part of the model.
    dropJournal();
    if (seconds) *seconds = time;
    if (heapBytes) *heapBytes = benchHeapInUse() - heapBefore;
}

void describe(const std::string& path) {
    {
        QELDMToXML writer(path.c_str());
        writer.execute(QELSession::getInstance());
        if (writer.hasFailed()) fail(path + ": the description could not be written");
    }
    dropJournal();
}

void apply(const std::string& path) {
    {
        QELXMLToDM reader(path.c_str());
        reader.execute(QELSession::getInstance());
    }
    dropJournal();
}

void answer(const std::string& description, const std::string& answerPath) {
    QELAnswerSimulator simulator;
    std::string error;
    if (!simulator.run(description, answerPath, error)) fail(description + ": " + error);
}

void checkCount(const char* what, long count) {
    if (count < 0) std::fprintf(stderr, "qel_bench: %s rejected the file\n", what);
}

// The W, R, M and Skip rows at one size.
void ratios(const Options& options) {
    const std::string size = std::to_string(options.occurrences);
    const std::string description = options.dir + "/description-" + size + ".xml";
    const std::string answerPath = options.dir + "/answer-" + size + ".xml";
    const std::string scratch = options.dir + "/scratch-" + size + ".xml";

    long long modelBytes = 0;
    buildSession(options.occurrences, nullptr, &modelBytes);
    describe(description);
    answer(description, answerPath);

    {
        const std::vector<std::string> lines = benchReadLines(description);
        benchPrint(benchPairs("W description / fputs+fflush per line", size, options.pairs,
                              [&] { describe(scratch); }, [&] { benchFputsLines(lines, scratch); }));
    }
    std::filesystem::remove(scratch);

    // The answer is applied to the same model in every round: the second
    // application finds the values of the first and does the same work.
    const std::vector<BenchRatio> reading = benchRounds(
        size, options.pairs, [&] { apply(answerPath); },
        {{"R answer / fgets", [&] { checkCount("fgets", benchFgetsLines(answerPath)); }},
         {"R answer / libxml2 reader", [&] { checkCount("libxml2", benchLibxml2Reader(answerPath)); }},
         {"R answer / expat", [&] { checkCount("expat", benchExpat(answerPath)); }},
         {"R answer / pugixml load_buffer", [&] { checkCount("pugixml", benchPugiLoad(answerPath)); }}});
    for (const BenchRatio& row : reading) benchPrint(row);

    // Skipping one element that holds the whole answer: <DESCFILE> on line 2
    // and its closing line at the end.
    long long systemSeeks = 0;
    benchPrint(benchPairs(
        "Skip element of K lines / K fgets", size, options.pairs,
        [&] {
            UTILLineFile file;
            if (file.open(answerPath.c_str()) != 0) fail(answerPath + ": cannot be read");
            std::string line;
            file.readLine(line);
            const long long start = file.tell();
            long long end = 0;
            if (!CV5CAAToolsDesc::searchClosingNode(file, QELElement::DESCFILE, start, end)) fail("no </DESCFILE>");
            systemSeeks += file.systemSeeks();
        },
        [&] { checkCount("fgets", benchFgetsLines(answerPath)); }));
    std::fprintf(stderr, "qel_bench: %s occurrences: %lld seeks reached the system while skipping\n", size.c_str(),
                 systemSeeks);

    QELSession::freeModel();
    dropJournal();
    const long long domBytes = benchPugiDomBytes(description);
    BenchRatio memory;
    memory.name = "M model / pugixml DOM of the description";
    memory.size = size;
    memory.first = static_cast<double>(modelBytes) / static_cast<double>(options.occurrences);
    memory.second = static_cast<double>(domBytes) / static_cast<double>(options.occurrences);
    memory.ratios.push_back(memory.first / memory.second);
    benchPrint(memory);

    std::filesystem::remove(description);
    std::filesystem::remove(answerPath);
}

// One build, description, answer and application, for a profiler
// (valgrind --tool=callgrind --toggle-collect='QELXMLToDM::execute*').
void once(const Options& options) {
    const std::string size = std::to_string(options.occurrences);
    const std::string description = options.dir + "/once-description-" + size + ".xml";
    const std::string answerPath = options.dir + "/once-answer-" + size + ".xml";
    buildSession(options.occurrences);
    auto split = [](const char* what, const std::function<void()>& work) {
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        work();
        getrusage(RUSAGE_SELF, &after);
        auto seconds = [](const timeval& a, const timeval& b) {
            return static_cast<double>(b.tv_sec - a.tv_sec) + static_cast<double>(b.tv_usec - a.tv_usec) * 1e-6;
        };
        std::fprintf(stderr, "qel_bench: %s: %.3f s user, %.3f s system\n", what,
                     seconds(before.ru_utime, after.ru_utime), seconds(before.ru_stime, after.ru_stime));
    };
    split("describe", [&] { describe(description); });
    answer(description, answerPath);
    split("apply", [&] { apply(answerPath); });
    QELSession::freeModel();
    std::filesystem::remove(description);
    std::filesystem::remove(answerPath);
}

// Build, describe and apply at two sizes; the rows are the per-occurrence
// time at the large size over that at the small one. One model at a time.
void scaling(const Options& options) {
    struct Times {
        double build = 0, describe = 0, apply = 0;
    };
    auto run = [&](long occurrences) {
        const std::string size = std::to_string(occurrences);
        const std::string description = options.dir + "/scaling-description-" + size + ".xml";
        const std::string answerPath = options.dir + "/scaling-answer-" + size + ".xml";
        Times times;
        buildSession(occurrences, &times.build);
        times.describe = benchTime([&] { describe(description); });
        answer(description, answerPath);
        std::filesystem::remove(description);
        times.apply = benchTime([&] { apply(answerPath); });
        std::filesystem::remove(answerPath);
        QELSession::freeModel();
        dropJournal();
        const double n = static_cast<double>(occurrences);
        times.build /= n;
        times.describe /= n;
        times.apply /= n;
        return times;
    };
    BenchRatio build, write, read;
    build.name = "S build per occurrence, large / small";
    write.name = "S describe per occurrence, large / small";
    read.name = "S apply per occurrence, large / small";
    build.size = write.size = read.size = std::to_string(options.large) + "/" + std::to_string(options.small);
    for (int pair = 0; pair < options.pairs; ++pair) {
        Times small, large;
        if (pair % 2 == 0) {
            small = run(options.small);
            large = run(options.large);
        } else {
            large = run(options.large);
            small = run(options.small);
        }
        // A pair at a million occurrences takes minutes: show each as it ends.
        std::fprintf(stderr, "qel_bench: scaling pair %d: build %.3f, describe %.3f, apply %.3f\n", pair + 1,
                     large.build / small.build, large.describe / small.describe, large.apply / small.apply);
        build.ratios.push_back(large.build / small.build);
        write.ratios.push_back(large.describe / small.describe);
        read.ratios.push_back(large.apply / small.apply);
        build.first += large.build / options.pairs;
        build.second += small.build / options.pairs;
        write.first += large.describe / options.pairs;
        write.second += small.describe / options.pairs;
        read.first += large.apply / options.pairs;
        read.second += small.apply / options.pairs;
    }
    benchPrint(build);
    benchPrint(write);
    benchPrint(read);
}

// What the model of that size holds, its heap, and the heap each structure
// takes as the containers lay it out (BenchCensus).
void census(const Options& options) {
    long long modelBytes = 0;
    buildSession(options.occurrences, nullptr, &modelBytes);
    std::printf("model heap\t%.0f B/occ\n", static_cast<double>(modelBytes) / options.occurrences);
    benchPrintCensus(stdout, benchCensus(), options.occurrences);
}

Options parse(int argc, char** argv) {
    Options options;
    if (argc < 2) fail("usage: qel_bench ratios|scaling|once|census|linearity [--occurrences N] [--small N] [--large N] [--pairs P] [--dir D]");
    options.mode = argv[1];
    for (int i = 2; i + 1 < argc; i += 2) {
        const std::string name = argv[i];
        const char* value = argv[i + 1];
        if (name == "--occurrences") options.occurrences = std::atol(value);
        else if (name == "--small") options.small = std::atol(value);
        else if (name == "--large") options.large = std::atol(value);
        else if (name == "--pairs") options.pairs = std::atoi(value);
        else if (name == "--dir") options.dir = value;
        else fail("unknown option " + name);
    }
    if (options.occurrences <= 0 || options.small <= 0 || options.large <= 0 || options.pairs <= 0)
        fail("sizes and pairs must be positive");
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = parse(argc, argv);
    std::error_code error;
    std::filesystem::create_directories(options.dir, error);
    if (error) fail(options.dir + ": " + error.message());
    if (options.mode == "ratios") ratios(options);
    else if (options.mode == "scaling") scaling(options);
    else if (options.mode == "once") once(options);
    else if (options.mode == "census") census(options);
    else if (options.mode == "linearity") benchLinearity(options.small, options.large, options.pairs);
    else fail("unknown mode " + options.mode);
    return 0;
}
