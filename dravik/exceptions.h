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

// Non-fatal messages that the editor shows in a message box (the register
// warning of the compiled-module reader). Like the alert hook, unset by
// default; installs a hook and returns the previous one.
using message_hook = void (*)(const std::string& text);
message_hook set_message_hook(message_hook hook);

// Message box (when installed), then the text on the module layer's warning
// stream (standard error unless another is installed, dravik_warn.h), with a
// line end unless the text ends with one. The process goes on.
void message_report(const std::string& text);

// Message box (when installed), standard error, end: for the fatal
// conditions shown as a message rather than an alert.
[[noreturn]] void fatal_message(const std::string& text);

// Standard error only, then end: for the conditions that show no alert.
[[noreturn]] void die(const std::string& text);

// ---- Reporters named like exceptions. Each builds its text and ends through
// fatal_report (alert, standard error, status 1).

// "Error: Illegal operation!", a line break, then `detail`.
[[noreturn]] void IllegalOperationException(const std::string& detail);
// "Exception in Hash Table: <context>: <key> is already defined".
[[noreturn]] void HashTableAddException(const std::string& context, const std::string& key);
// "Error: Already defined : <name>: <what>".
[[noreturn]] void AlreadyDefinedException(const std::string& name, const std::string& what);
// "Error: Undefined type: " / "Error: Undefined constant: " /
// "Error: Undefined method: " followed by `detail`.
[[noreturn]] void UndefinedTypeException(const std::string& detail);
[[noreturn]] void UndefinedConstantException(const std::string& detail);
[[noreturn]] void UndefinedMethodException(const std::string& detail);
// A BDD operation asked of a plain Expression:
// "Error: Abstract method called: <method>", e.g. "Expression::getBddStatus()".
[[noreturn]] void AbstractMethodException(const std::string& method);
// The wood of a module could not date its equations:
// "Error: Scheduling failure in module `<module>': equations cannot be dated".
[[noreturn]] void SchedulingFailureException(const std::string& module);
// Interface refusals: "Impossible to add <kind> Signal <name>..." and
// "<kind> Signal: <name> not found!", kind being "Input" or "Output".
[[noreturn]] void ImpossibleToAddSignalException(const std::string& kind, const std::string& name);
[[noreturn]] void SignalNotFoundException(const std::string& kind, const std::string& name);

#endif
