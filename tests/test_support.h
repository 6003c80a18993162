#ifndef QUILP_TEST_SUPPORT_H
#define QUILP_TEST_SUPPORT_H

// Helpers shared by the test suites: standard error of an action, text of a
// printer, scratch directories, whole-file reads and running an executable as
// a separate process.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace quilp_test {

// What `action` writes on standard error.
template <class F>
std::string stderr_of(F&& action)
{
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

// What `print` writes on the stream it is given.
template <class F>
std::string text_of(F&& print)
{
    std::ostringstream os;
    print(os);
    return os.str();
}

// A fresh directory under the system's temporary directory, removed with
// everything in it when the object goes.
class scratch_dir {
public:
    scratch_dir();
    ~scratch_dir();
    scratch_dir(const scratch_dir&) = delete;
    scratch_dir& operator=(const scratch_dir&) = delete;

    const std::string& path() const { return dir; }
    std::string file(const std::string& name) const { return dir + "/" + name; }

private:
    std::string dir;
};

std::string read_file(const std::string& path);
void write_file(const std::string& path, const std::string& content);
bool file_exists(const std::string& path);

// Compares `actual` with the golden file `relative` (below the test data
// folder; a missing file stands for an empty text); under --update, writes
// `actual` there instead (a golden changes only then, to be read as a diff).
void expect_golden(const std::string& relative, const std::string& actual);

struct process_result {
    int status = -1;  // exit status, or -1 when the process did not exit normally
    std::string out;
    std::string err;
};

// Runs `program` with `args` in directory `cwd`, standard input empty,
// capturing both output streams. `env` entries ("NAME=value") are added to
// the environment.
process_result run_process(const std::string& program, const std::vector<std::string>& args,
                           const std::string& cwd, const std::vector<std::string>& env = {});

}  // namespace quilp_test

#endif
