# The BDD package and the wood, side by side with BuDDy (static archive, C
# interface only: see buddy_side.cpp).
find_library(BUDDY_STATIC_LIBRARY libbdd.a REQUIRED)
add_executable(bdd_bench bdd_bench.cpp bdd_workloads.cpp buddy_side.cpp)
target_link_libraries(bdd_bench PRIVATE quilp_dravik ${BUDDY_STATIC_LIBRARY})
target_compile_options(bdd_bench PRIVATE ${QUILP_WARNINGS})
