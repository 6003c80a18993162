#ifndef QUILP_TEST_PATHS_H
#define QUILP_TEST_PATHS_H

// Where the tests find their data, given on each test program's command
// line (CTest passes them): --data DIR (tests/data) and --examples DIR
// (examples). --update makes the golden-file tests rewrite their goldens
// instead of comparing with them.

#include <string>

namespace quilp_test {

const std::string& data_dir();
const std::string& examples_dir();
bool update_goldens();

}  // namespace quilp_test

#endif
