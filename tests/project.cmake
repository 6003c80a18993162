# The project layer: model, reader, geometry and writers; the batch command line.
quilp_add_test(project_tests
  SOURCES model_test.cpp bix_reader_test.cpp geometry_test.cpp writers_test.cpp sheet_geometry_test.cpp
          file_replace_test.cpp names_test.cpp
  LIBS quilp_project quilp_test_support)
