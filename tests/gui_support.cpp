#include "gui_support.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quilp_gui {

namespace {

// Starts `argv` with standard output and error going to files (or
// /dev/null); returns its process id.
int spawn(const std::vector<std::string>& argv, const std::string& out, const std::string& err,
          const std::string& folder = std::string(), int keep_fd = -1,
          const std::vector<std::pair<std::string, std::string>>& env = {})
{
    const pid_t pid = fork();
    if (pid != 0)
        return pid;
    for (const auto& e : env)
        setenv(e.first.c_str(), e.second.c_str(), 1);
    const int null_in = open("/dev/null", O_RDONLY);
    dup2(null_in, 0);
    const int o = open(out.empty() ? "/dev/null" : out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int e = open(err.empty() ? "/dev/null" : err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(o, 1);
    dup2(e, 2);
    for (int fd = 3; fd < 256; ++fd)
        if (fd != keep_fd)
            close(fd);
    if (!folder.empty() && chdir(folder.c_str()) != 0)
        _exit(127);
    std::vector<char*> args;
    for (const std::string& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    execvp(args[0], args.data());
    _exit(127);
}

std::string read_all(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string scratch_file(const std::string& stem)
{
    std::string pattern = (std::filesystem::temp_directory_path() / ("quilp-gui-" + stem + "-XXXXXX")).string();
    const int fd = mkstemp(pattern.data());
    if (fd >= 0)
        close(fd);
    return pattern;
}

// The X server shared by every test of the program, started on first use.
class x_server {
public:
    x_server()
    {
        int fds[2];
        if (pipe(fds) != 0)
            return;
        pid = spawn({"Xvfb", "-displayfd", std::to_string(fds[1]), "-screen", "0", "1280x1024x24", "-nolisten",
                     "tcp"},
                    "", "", "", fds[1]);
        close(fds[1]);
        std::string number;
        char c = 0;
        while (read(fds[0], &c, 1) == 1 && c != '\n')
            number += c;
        close(fds[0]);
        if (!number.empty())
            setenv("DISPLAY", (":" + number).c_str(), 1);
        ok = !number.empty();
    }
    ~x_server()
    {
        if (pid > 0) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
        }
    }
    bool ok = false;

private:
    int pid = -1;
};

x_server& display()
{
    static x_server server;
    return server;
}

}  // namespace

long image::at(int x, int y) const
{
    if (x < 0 || y < 0 || x >= width || y >= height)
        return -1;
    const std::size_t i = (static_cast<std::size_t>(y) * width + x) * 3;
    return (static_cast<long>(rgb[i]) << 16) | (static_cast<long>(rgb[i + 1]) << 8) | rgb[i + 2];
}

std::string tool(const std::vector<std::string>& args)
{
    if (!display().ok)
        ADD_FAILURE() << "no X server: Xvfb could not be started";
    const std::string out = scratch_file("out");
    const int pid = spawn(args, out, "");
    int status = 0;
    waitpid(pid, &status, 0);
    std::string text = read_all(out);
    std::remove(out.c_str());
    if (!WIFEXITED(status) || (WEXITSTATUS(status) != 0 && args[0] != "timeout"))
        ADD_FAILURE() << "command failed: " << args[0] << " " << (args.size() > 1 ? args[1] : "");
    return text;
}

void settle(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds timeout)
{
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (true) {
        if (condition())
            return true;
        if (std::chrono::steady_clock::now() > end)
            return false;
        settle(100);
    }
}

namespace {

std::vector<unsigned long> windows_titled(const std::string& title)
{
    // xdotool matches a case-insensitive regular expression: anchor it, and
    // compare the exact title of what it finds.
    std::string pattern = "^";
    for (char c : title) {
        if (std::string("\\^$.|?*+()[]{}").find(c) != std::string::npos)
            pattern += '\\';
        pattern += c;
    }
    pattern += "$";
    std::vector<unsigned long> found;
    std::istringstream ids(tool({"timeout", "5", "xdotool", "search", "--onlyvisible", "--name", pattern}));
    for (unsigned long id = 0; ids >> id;)
        if (tool({"xdotool", "getwindowname", std::to_string(id)}) == title + "\n")
            found.push_back(id);
    return found;
}

}  // namespace

unsigned long find_window(const std::string& title, std::chrono::milliseconds timeout)
{
    unsigned long id = 0;
    eventually(
        [&] {
            const std::vector<unsigned long> w = windows_titled(title);
            id = w.empty() ? 0 : w.back();
            return id != 0;
        },
        timeout);
    return id;
}

bool window_shown(const std::string& title) { return !windows_titled(title).empty(); }

image screenshot(unsigned long window)
{
    // import without a window waits for a click: never ask it that.
    if (window == 0) {
        ADD_FAILURE() << "no window to take a screenshot of";
        return image{};
    }
    const std::string ppm =
        tool({"timeout", "30", "import", "-window", std::to_string(window), "-depth", "8", "ppm:-"});
    image img;
    std::istringstream in(ppm);
    std::string magic;
    int maxval = 0;
    in >> magic >> img.width >> img.height >> maxval;
    in.get();
    if (magic != "P6" || maxval != 255) {
        ADD_FAILURE() << "unreadable screenshot";
        return image{};
    }
    img.rgb.resize(static_cast<std::size_t>(img.width) * img.height * 3);
    in.read(reinterpret_cast<char*>(img.rgb.data()), static_cast<std::streamsize>(img.rgb.size()));
    return img;
}

void keep_screenshot(unsigned long window, const std::string& name)
{
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    const std::string folder =
        "gui-shots/" + std::string(test->test_suite_name()) + "." + test->name();
    std::filesystem::create_directories(folder);
    if (window != 0)
        tool({"timeout", "30", "import", "-window", std::to_string(window), folder + "/" + name + ".png"});
}

void set_clipboard(const std::string& text)
{
    const std::string file = scratch_file("clip");
    std::ofstream(file) << text;
    // xclip stays to serve the selection until it is pasted once.
    spawn({"xclip", "-selection", "clipboard", "-loops", "1", "-i", file}, "", "");
    settle(200);
    std::remove(file.c_str());
}

void move_to(unsigned long window, int x, int y)
{
    tool({"xdotool", "mousemove", "--window", std::to_string(window), std::to_string(x), std::to_string(y)});
    settle(50);
}

void click(unsigned long window, int x, int y)
{
    move_to(window, x, y);
    tool({"xdotool", "click", "1"});
    settle();
}

void press(unsigned long window, int x, int y)
{
    move_to(window, x, y);
    tool({"xdotool", "mousedown", "1"});
    settle();
}

void release()
{
    tool({"xdotool", "mouseup", "1"});
    settle();
}

void keys(const std::vector<std::string>& names)
{
    for (const std::string& k : names) {
        tool({"xdotool", "key", k});
        settle(40);
    }
    settle();
}

void type_text(const std::string& text)
{
    tool({"xdotool", "type", "--delay", "30", text});
    settle();
}

quilp_app::quilp_app(const std::string& program, const std::string& folder)
{
    tool({"xdotool", "mousemove", "640", "512"});
    err_path = scratch_file("err");
    out_path = scratch_file("out");
    boxes_path = scratch_file("boxes");
    // Under load, an editor started just after the server has once been
    // seen to find no display and end at once: start it again then.
    const std::string title = "QUILP: Linker Of Object Modules";
    for (int attempt = 0; attempt < 3; ++attempt) {
        pid = spawn({program}, out_path, err_path, folder, -1, {{"QUILP_DIALOG_LOG", boxes_path}});
        eventually(
            [&] {
                const std::vector<unsigned long> w = windows_titled(title);
                main = w.empty() ? 0 : w.back();
                return main != 0 || !running();
            },
            std::chrono::seconds(10));
        if (main != 0 || running() || error_text().find("Can't open display") == std::string::npos)
            break;
        std::cerr << "the editor found no display; starting it again" << std::endl;
        settle(500);
    }
    if (main == 0)
        ADD_FAILURE() << "the editor's window did not open: " << error_text();
    settle(300);
}

quilp_app::~quilp_app()
{
    if (running()) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    std::remove(err_path.c_str());
    std::remove(out_path.c_str());
    std::remove(boxes_path.c_str());
}

bool quilp_app::running() const
{
    if (pid <= 0)
        return false;
    int status = 0;
    return waitpid(pid, &status, WNOHANG) == 0;
}

int quilp_app::wait_exit(std::chrono::milliseconds timeout)
{
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < end) {
        int status = 0;
        const pid_t r = waitpid(pid, &status, WNOHANG);
        if (r == pid) {
            pid = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        settle(50);
    }
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    pid = -1;
    return -1;
}

std::string quilp_app::error_text() const { return read_all(err_path); }

std::vector<std::string> quilp_app::boxes_shown() const
{
    std::vector<std::string> texts;
    const std::string all = read_all(boxes_path);
    const std::string end = "\n--\n";
    for (std::string::size_type start = 0, at; (at = all.find(end, start)) != std::string::npos; start = at + end.size())
        texts.push_back(all.substr(start, at - start));
    return texts;
}

namespace {

// Windows shown now: a menu that opens adds one, without a title.
std::size_t shown_windows()
{
    std::istringstream ids(tool({"timeout", "5", "xdotool", "search", "--onlyvisible", "--name", ".*"}));
    std::size_t n = 0;
    for (unsigned long id = 0; ids >> id;)
        ++n;
    return n;
}

}  // namespace

void click_menu(unsigned long window, int x, int y)
{
    const std::size_t before = shown_windows();
    click(window, x, y);
    EXPECT_TRUE(eventually([&] { return shown_windows() > before; })) << "no menu opened";
    settle(100);
}

void quilp_app::open_menu(int x, int y, int position)
{
    click_menu(main, x, y);
    std::vector<std::string> downs(position, "Down");
    keys(downs);
}

void quilp_app::file_menu(int position)
{
    open_menu(50, 35, position);
    keys({"Return"});
}

void quilp_app::file_menu_xfig()
{
    // The submenu opens as "Export" is reached; Right enters it.
    open_menu(50, 35, 5);
    settle(200);
    keys({"Right"});
    settle(200);
    keys({"Return"});
}

void quilp_app::io_menu(int position)
{
    open_menu(140, 35, position);
    keys({"Return"});
}

void quilp_app::types_menu()
{
    open_menu(235, 35, 1);
    keys({"Return"});
}

void quilp_app::choose_file(const std::string& title, const std::string& path)
{
    const unsigned long chooser = find_window(title);
    ASSERT_NE(chooser, 0u) << "no file chooser titled " << title;
    set_clipboard(path);
    // The file name field: select all, paste, Enter.
    keys({"ctrl+a", "BackSpace", "ctrl+v"});
    settle(200);
    keys({"Return"});
    eventually([&] { return !window_shown(title); });
}

void quilp_app::cancel_file(const std::string& title)
{
    ASSERT_NE(find_window(title), 0u) << "no file chooser titled " << title;
    keys({"Escape"});
    eventually([&] { return !window_shown(title); });
}

}  // namespace quilp_gui
