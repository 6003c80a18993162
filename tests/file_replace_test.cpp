// Whole-file replacement: the target changes only once the new text is
// complete; every failure leaves the previous file and no stray file.

#include "file_replace.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <csignal>
#include <dirent.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quilp_test;

namespace {

std::vector<std::string> entries(const std::string& dir)
{
    std::vector<std::string> names;
    if (DIR* d = opendir(dir.c_str())) {
        while (dirent* e = readdir(d))
            if (std::string(e->d_name) != "." && std::string(e->d_name) != "..")
                names.push_back(e->d_name);
        closedir(d);
    }
    std::sort(names.begin(), names.end());
    return names;
}

auto text(const std::string& t)
{
    return [t](std::ostream& os) { os << t; };
}

TEST(FileReplace, WritesNewFilesAndReplacesOldOnesKeepingTheirMode)
{
    scratch_dir dir;
    const std::string target = dir.file("p.bix");
    std::string error;
    ASSERT_TRUE(replace_file(target, text("first\n"), &error)) << error;
    EXPECT_EQ(read_file(target), "first\n");
    chmod(target.c_str(), 0640);
    ASSERT_TRUE(replace_file(target, text("second"), &error)) << error;
    EXPECT_EQ(read_file(target), "second");
    struct stat st;
    ASSERT_EQ(stat(target.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    EXPECT_EQ(entries(dir.path()), std::vector<std::string>{"p.bix"});
}

TEST(FileReplace, FailuresLeaveThePreviousFileAndNoTemporary)
{
    scratch_dir dir;
    // A folder of that name.
    mkdir(dir.file("d.bix").c_str(), 0755);
    std::string error;
    EXPECT_FALSE(replace_file(dir.file("d.bix"), text("x"), &error));
    EXPECT_NE(error.find("folder"), std::string::npos) << error;
    // A folder that does not exist.
    EXPECT_FALSE(replace_file(dir.file("none/p.bix"), text("x"), &error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
    EXPECT_EQ(entries(dir.path()), std::vector<std::string>{"d.bix"});
}

TEST(FileReplace, AFullDiskKeepsTheOldFile)
{
    scratch_dir dir;
    const std::string target = dir.file("p.bix");
    write_file(target, "saved before\n");
    // A child whose files may not grow past 4 KB: the write of 64 KB fails
    // as it would on a full disk.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        signal(SIGXFSZ, SIG_IGN);
        rlimit limit{4096, 4096};
        setrlimit(RLIMIT_FSIZE, &limit);
        std::string error;
        const bool ok = replace_file(target, text(std::string(65536, 'x')), &error);
        _exit(!ok && error.find("File too large") != std::string::npos ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(read_file(target), "saved before\n");
    EXPECT_EQ(entries(dir.path()), std::vector<std::string>{"p.bix"});
}

TEST(FileReplace, AReadOnlyFolderIsRefused)
{
    scratch_dir dir;
    const std::string target = dir.file("ro/p.bix");
    mkdir(dir.file("ro").c_str(), 0755);
    write_file(target, "kept");
    chmod(dir.path().c_str(), 0755);
    chmod(dir.file("ro").c_str(), 0555);
    // Permissions do not bind the superuser: a child run as root writes as
    // the unprivileged user instead.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
            _exit(2);
        std::string error;
        const bool ok = replace_file(target, text("lost"), &error);
        _exit(!ok && error.find("Permission denied") != std::string::npos ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    chmod(dir.file("ro").c_str(), 0755);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(read_file(target), "kept");
    EXPECT_EQ(entries(dir.file("ro")), std::vector<std::string>{"p.bix"});
}

}  // namespace
