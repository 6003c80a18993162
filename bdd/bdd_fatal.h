#ifndef BDD_FATAL_H
#define BDD_FATAL_H

// How the process ends on a fatal condition of the BDD package and of the
// layers above it. By default it exits with status 1. Tests and fuzz targets
// may install a handler of their own; a handler must not return normally
// (it may throw or jump away). If it returns, the process still exits with 1.
using fatal_ending_handler = void (*)();

// Installs a handler (null restores the default) and returns the previous one.
fatal_ending_handler set_fatal_ending(fatal_ending_handler handler);

// Work that must be done before any fatal end, such as flushing a reader's
// buffered trace so that it is complete up to the fault. Runs first, before
// the handler. Installs a hook (null for none) and returns the previous one;
// a hook should call the one it replaced.
using fatal_flush_hook = void (*)();
fatal_flush_hook set_fatal_flush(fatal_flush_hook hook);

[[noreturn]] void fatal_ending();

#endif
