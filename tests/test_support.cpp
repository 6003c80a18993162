#include "test_support.h"

#include "test_paths.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quilp_test {

scratch_dir::scratch_dir()
{
    std::string pattern = (std::filesystem::temp_directory_path() / "quilp-test-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("mkdtemp failed");
    dir = pattern;
}

scratch_dir::~scratch_dir()
{
    std::error_code ignored;
    std::filesystem::remove_all(dir, ignored);
}

std::string read_file(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void write_file(const std::string& path, const std::string& content)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

bool file_exists(const std::string& path)
{
    return std::filesystem::exists(path);
}

void expect_golden(const std::string& relative, const std::string& actual)
{
    // A missing golden file stands for an empty text, so that the many empty
    // standard error goldens need no file of their own.
    const std::string path = data_dir() + "/" + relative;
    const bool exists = file_exists(path);
    if (update_goldens()) {
        if (actual.empty())
            std::filesystem::remove(path);
        else if (!exists || read_file(path) != actual)
            write_file(path, actual);
        return;
    }
    EXPECT_EQ(actual, exists ? read_file(path) : std::string())
        << "differs from " << relative << (exists ? "" : " (no such file: run with --update to make it)");
}

process_result run_process(const std::string& program, const std::vector<std::string>& args,
                           const std::string& cwd, const std::vector<std::string>& env)
{
    scratch_dir capture;
    const std::string out_path = capture.file("out");
    const std::string err_path = capture.file("err");

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);

    std::vector<std::string> argv_text{program};
    argv_text.insert(argv_text.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : argv_text)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    std::vector<std::string> env_text;
    for (char** e = environ; *e; ++e)
        env_text.push_back(*e);
    env_text.insert(env_text.end(), env.begin(), env.end());
    std::vector<char*> envp;
    for (std::string& e : env_text)
        envp.push_back(e.data());
    envp.push_back(nullptr);

    // posix_spawn has no portable "chdir" action in this C library: change
    // directory around the spawn instead (the tests run one process at a time).
    const std::filesystem::path here = std::filesystem::current_path();
    std::filesystem::current_path(cwd);
    pid_t pid = 0;
    const int rc = posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    std::filesystem::current_path(here);
    posix_spawn_file_actions_destroy(&actions);

    process_result result;
    if (rc != 0)
        return result;
    int wstatus = 0;
    waitpid(pid, &wstatus, 0);
    if (WIFEXITED(wstatus))
        result.status = WEXITSTATUS(wstatus);
    result.out = read_file(out_path);
    result.err = read_file(err_path);
    return result;
}

}  // namespace quilp_test
