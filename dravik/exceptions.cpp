#include "exceptions.h"

#include "bdd_fatal.h"
#include "dravik_warn.h"

#include <iostream>

namespace {
alert_hook current_alert = nullptr;
message_hook current_message = nullptr;

void write_line(std::ostream& os, const std::string& text)
{
    os << text;
    if (text.empty() || text.back() != '\n')
        os << '\n';
    os.flush();
}
}

alert_hook set_alert_hook(alert_hook hook)
{
    alert_hook previous = current_alert;
    current_alert = hook;
    return previous;
}

void fatal_report(const std::string& text)
{
    if (current_alert)
        current_alert(text);
    std::cerr << text << std::endl;
    fatal_ending();
}

message_hook set_message_hook(message_hook hook)
{
    message_hook previous = current_message;
    current_message = hook;
    return previous;
}

void message_report(const std::string& text)
{
    if (current_message)
        current_message(text);
    write_line(dravik_warn(), text);
}

void fatal_message(const std::string& text)
{
    if (current_message)
        current_message(text);
    write_line(std::cerr, text);
    fatal_ending();
}

void die(const std::string& text)
{
    std::cerr << text << std::endl;
    fatal_ending();
}

void IllegalOperationException(const std::string& detail)
{
    fatal_report("Error: Illegal operation!\n" + detail);
}

void HashTableAddException(const std::string& context, const std::string& key)
{
    fatal_report("Exception in Hash Table: " + context + ": " + key + " is already defined");
}

void AlreadyDefinedException(const std::string& name, const std::string& what)
{
    fatal_report("Error: Already defined : " + name + ": " + what);
}

void UndefinedTypeException(const std::string& detail)
{
    fatal_report("Error: Undefined type: " + detail);
}

void UndefinedConstantException(const std::string& detail)
{
    fatal_report("Error: Undefined constant: " + detail);
}

void UndefinedMethodException(const std::string& detail)
{
    fatal_report("Error: Undefined method: " + detail);
}

void AbstractMethodException(const std::string& method)
{
    fatal_report("Error: Abstract method called: " + method);
}

void SchedulingFailureException(const std::string& module)
{
    fatal_report("Error: Scheduling failure in module `" + module + "': equations cannot be dated");
}

void ImpossibleToAddSignalException(const std::string& kind, const std::string& name)
{
    fatal_report("Impossible to add " + kind + " Signal " + name + "...");
}

void SignalNotFoundException(const std::string& kind, const std::string& name)
{
    fatal_report(kind + " Signal: " + name + " not found!");
}
