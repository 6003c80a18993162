add_executable(bench_gen_ixc ${CMAKE_CURRENT_LIST_DIR}/gen_ixc.cpp)
