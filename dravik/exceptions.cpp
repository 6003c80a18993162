#include "exceptions.h"

#include "bdd_fatal.h"

#include <iostream>

namespace {
alert_hook current_alert = nullptr;
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

void die(const std::string& text)
{
    std::cerr << text << std::endl;
    fatal_ending();
}
