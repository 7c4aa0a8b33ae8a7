// Runs programs: output into files, so that no pipe can fill up.
// SPDX-License-Identifier: MIT
#include "tests/cli/Run.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/PdfText.h"

namespace {

void Redirect(const std::string &path, int flags, int to) {
    const int file = open(path.c_str(), flags, 0600);
    if (file < 0 || dup2(file, to) < 0) _exit(126);
    close(file);
}

void LimitFiles(long bytes) {
    const rlimit limit{static_cast<rlim_t>(bytes), static_cast<rlim_t>(bytes)};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
}

struct Channels {
    std::string in, out, err;
};

[[noreturn]] void Become(const std::vector<char *> &arguments, const Channels &channels, const RunOptions &options) {
    Redirect(channels.in, O_RDONLY, STDIN_FILENO);
    Redirect(channels.out, O_WRONLY | O_TRUNC, STDOUT_FILENO);
    Redirect(channels.err, O_WRONLY | O_TRUNC, STDERR_FILENO);
    // A shell that runs the tests in the background has signals ignored.
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) std::signal(number, SIG_DFL);
    if (options.fileLimit > 0) LimitFiles(options.fileLimit);
    alarm(options.seconds);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

} // namespace

std::ostream &operator<<(std::ostream &stream, const Ran &ran) {
    return stream << "exit " << ran.exit << " signal " << ran.signal << "\n" << ran.out.substr(0, 2000) << ran.err;
}

Ran RunProgram(const std::vector<std::string> &command, const RunOptions &options) {
    const Channels channels{TempFile("in", options.in), TempFile("out", ""), TempFile("err", "")};
    std::vector<char *> arguments;
    for (const std::string &argument : command) arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) Become(arguments, channels, options);
    int status = 0;
    waitpid(child, &status, 0);
    Ran ran;
    if (WIFEXITED(status)) ran.exit = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) ran.signal = WTERMSIG(status);
    ran.out = ReadAll(channels.out);
    ran.err = ReadAll(channels.err);
    return ran;
}

Ran Jackdaw(std::vector<std::string> arguments, const RunOptions &options) {
    // What the font library keeps for good is no leak of ours; only a build with sanitizers looks.
    static const std::string s_suppressions = TempFile("leaks", "leak:libfontconfig\n");
    setenv("LSAN_OPTIONS", ("print_suppressions=0:suppressions=" + s_suppressions).c_str(), /*overwrite*/ 1);
    arguments.insert(arguments.begin(), TEST_JACKDAW);
    return RunProgram(arguments, options);
}

std::string NewName() {
    return std::filesystem::path(TempFile("x", "")).replace_filename("out.pdf");
}

std::size_t CountLines(const std::string &text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool HasProgram(const std::string &name) {
    return RunProgram({"sh", "-c", "command -v " + name}).exit == 0;
}

std::map<std::string, Json> FieldsOf(const std::string &pdf) {
    const Ran ran = Jackdaw({"fields", pdf, "--json"});
    EXPECT_TRUE(ran.exit == 0 || ran.exit == 3) << ran;
    std::map<std::string, Json> fields;
    std::istringstream lines(ran.out);
    for (std::string line; std::getline(lines, line);) {
        const Json field = Json::parse(line);
        fields[field["name"]] = field;
    }
    return fields;
}

Json ValueIn(const std::string &pdf, const std::string &name) {
    const auto fields = FieldsOf(pdf);
    const auto found = fields.find(name);
    return found == fields.end() ? Json("(no such field)") : found->second["value"];
}
