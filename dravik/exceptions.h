#ifndef DRAVIK_EXCEPTIONS_H
#define DRAVIK_EXCEPTIONS_H

#include <string>

// Fatal reporting of the module layer. Every fatal condition ends here:
// the alert hook (installed only by the editor) shows the text, the text goes
// to standard error with a line end, and the process ends through
// fatal_ending() (status 1 unless a test installed its own ending).

using alert_hook = void (*)(const std::string& text);

// Installs the modal alert shown before a fatal end; returns the previous hook.
// Batch runs, the inspector and the tests run without one.
alert_hook set_alert_hook(alert_hook hook);

// Alert (when installed), standard error, end.
[[noreturn]] void fatal_report(const std::string& text);

// Standard error only, then end: for the conditions that show no alert.
[[noreturn]] void die(const std::string& text);

#endif
