#ifndef QUILP_TEST_GUI_SUPPORT_H
#define QUILP_TEST_GUI_SUPPORT_H

// Driving the real editor in a private X server, as a person would: the
// test program starts its own Xvfb (1280 x 1024 x 24, no window manager),
// runs quilp in it, finds windows by their titles and works them with
// xdotool, relative to each window's origin; it reads what is on the screen
// from screenshots.

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quilp_gui {

// What a window shows: 8-bit RGB, row by row.
struct image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;

    // The pixel at (x, y) as 0xRRGGBB; -1 outside the image.
    long at(int x, int y) const;
};

// Colours of the toolkit's map as the X server shows them.
const long black = 0x000000;
const long white = 0xffffff;
const long red = 0xff0000;
const long sheet_grey = 0xc0c0c0;

// Runs a command of the test tools (xdotool, import, xclip ...) and returns
// its standard output; a failure to run it fails the test.
std::string tool(const std::vector<std::string>& args);

// Waits up to `timeout` for a window titled exactly `title`; 0 when none.
unsigned long find_window(const std::string& title, std::chrono::milliseconds timeout = std::chrono::seconds(10));
// True when a window titled exactly `title` is shown now.
bool window_shown(const std::string& title);
// Waits until `condition` holds or `timeout` passes; its last answer.
bool eventually(const std::function<bool()>& condition,
                std::chrono::milliseconds timeout = std::chrono::seconds(10));
// Lets the editor's loop catch up with the events sent.
void settle(int milliseconds = 150);

image screenshot(unsigned long window);
// Writes the window's picture under gui-shots/ in the test's working folder.
void keep_screenshot(unsigned long window, const std::string& name);

// Puts `text` on the clipboard, for pasting into a field.
void set_clipboard(const std::string& text);

// Mouse and keys on a window, coordinates relative to its origin.
void click(unsigned long window, int x, int y);
void press(unsigned long window, int x, int y);
void move_to(unsigned long window, int x, int y);
void release();
void keys(const std::vector<std::string>& names);
// Clicks a menu button and waits for its menu to open.
void click_menu(unsigned long window, int x, int y);
void type_text(const std::string& text);

// The editor running as its own process in the test's X server.
class quilp_app {
public:
    // Starts `program` without arguments in `folder`, the pointer first at
    // (640, 512), and waits for its main window.
    quilp_app(const std::string& program, const std::string& folder);
    ~quilp_app();
    quilp_app(const quilp_app&) = delete;
    quilp_app& operator=(const quilp_app&) = delete;

    unsigned long window() const { return main; }
    // Waits for the process to end: its exit status, -1 on a timeout (the
    // process is then killed) or a signal.
    int wait_exit(std::chrono::milliseconds timeout = std::chrono::seconds(10));
    bool running() const;
    // What it wrote on standard error so far.
    std::string error_text() const;
    // The texts of the message boxes and alerts it showed so far.
    std::vector<std::string> boxes_shown() const;

    // A File menu item by its position in the open menu (New 1 ... Quit 7);
    // the Export submenu's item is `file_item_xfig`.
    void file_menu(int position);
    void file_menu_xfig();
    // The nth item of the I/O menu, the Types menu's only item.
    void io_menu(int position);
    void types_menu();
    // Answers the file chooser titled `title` with `path`, or cancels it.
    void choose_file(const std::string& title, const std::string& path);
    void cancel_file(const std::string& title);

private:
    int pid = -1;
    unsigned long main = 0;
    std::string err_path;
    std::string out_path;
    std::string boxes_path;
    void open_menu(int x, int y, int position);
};

}  // namespace quilp_gui

#endif
