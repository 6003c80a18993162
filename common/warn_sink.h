#ifndef QUILP_WARN_SINK_H
#define QUILP_WARN_SINK_H

#include <iostream>
#include <utility>

// The stream a library writes its non-fatal messages to: standard error
// until another is installed. Standard error is looked up at each message,
// so a redirection of std::cerr's buffer is followed too.
class warn_sink {
public:
    std::ostream& stream() const { return installed ? *installed : std::cerr; }

    // Installs `sink` (null for standard error); returns the previous one.
    std::ostream* install(std::ostream* sink)
    {
        std::swap(installed, sink);
        return sink;
    }

private:
    std::ostream* installed = nullptr;
};

#endif
