// qel tree SESSION and qel generate: the assembly tree of a session file,
// and synthetic session files for large runs.
#include <iostream>
#include <memory>

#include <CLI/CLI.hpp>

#include "QELCommandSupport.h"
#include "QELCommands.h"
#include "QELInputFile.h"
#include "QELOutputFile.h"
#include "QELProgress.h"
#include "QELSessionFile.h"
#include "QELStandardOutput.h"

namespace {

struct TreeOptions {
    std::string session;
    std::string format = "text";
};

int tree(const TreeOptions& options) {
    QELInputFile session;
    if (const int status = session.open(options.session)) return status;
    QELModelScope model;
    if (!qelBuildSession(session, {})) return QELExit_Usage;
    qelPrintTree(std::cout, options.format == "dot");
    return qelStandardOutputWritten() ? QELExit_Success : QELExit_Failed;
}

struct GenerateOptions {
    long occurrences = 1000;
    int depth = 6;
    unsigned long seed = 1;
    std::string output = "-";
};

int generate(const GenerateOptions& options) {
    std::string text;
    {
        QELProgress progress("generating " + std::to_string(options.occurrences) + " occurrences");
        text = qelGenerateSession(options.occurrences, options.depth, options.seed);
    }
    QELOutputFile output;
    const bool written = output.open(options.output, true) && output.write(text) && output.commit();
    return written ? QELExit_Success : QELExit_Failed;
}

} // namespace

void qelAddTreeCommand(CLI::App& app, QELRun& run) {
    auto treeOptions = std::make_shared<TreeOptions>();
    CLI::App* tree = app.add_subcommand("tree", "Print the assembly tree of a session's workspaces");
    tree->add_option("SESSION", treeOptions->session, "the session file (JSON; - for standard input)")
        ->required()
        ->check(qelExistingInput());
    tree->add_option("--format", treeOptions->format, "text (indented) or dot (Graphviz)")
        ->check(CLI::IsMember({"text", "dot"}))
        ->capture_default_str();
    tree->callback([&run, treeOptions] { run.work = [treeOptions] { return ::tree(*treeOptions); }; });
}

void qelAddGenerateCommand(CLI::App& app, QELRun& run) {
    auto options = std::make_shared<GenerateOptions>();
    CLI::App* command =
        app.add_subcommand("generate", "Write a synthetic session file of a large assembly, shaped like real ones");
    command->add_option("--occurrences", options->occurrences, "absolute occurrences in the assembly")
        ->check(CLI::Range(1L, 100000000L))
        ->capture_default_str();
    command->add_option("--depth", options->depth, "the deepest level of the tree")
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
    command->add_option("--seed", options->seed, "the same seed gives the same file")->capture_default_str();
    command->add_option("-o,--output", options->output, "the session file to write (- for standard output)")
        ->capture_default_str();
    command->callback([&run, options] { run.work = [options] { return generate(*options); }; });
}
