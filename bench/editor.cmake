find_package(X11 REQUIRED)
add_executable(bench_editor ${CMAKE_CURRENT_LIST_DIR}/editor_bench.cpp)
target_link_libraries(bench_editor PRIVATE quilp_editor X11::X11)
