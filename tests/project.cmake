# The project layer: model, reader, geometry and writers; the batch command line.
add_library(quilp_test_support STATIC test_support.cpp)
target_include_directories(quilp_test_support PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})

quilp_add_test(project_tests
  SOURCES model_test.cpp bix_reader_test.cpp
  LIBS quilp_project quilp_test_support)
