add_executable(bench_bix ${CMAKE_CURRENT_LIST_DIR}/bix_tool.cpp)
target_link_libraries(bench_bix PRIVATE quilp_project)
