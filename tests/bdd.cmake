# The BDD package, checked against BuDDy (test oracle only); the expression wood.
# The static archive, and only its C interface (see buddy_oracle.cpp).
find_library(BUDDY_STATIC_LIBRARY libbdd.a REQUIRED)

quilp_add_test(bdd_test
  SOURCES bdd_manager_test.cpp bdd_oracle_test.cpp buddy_oracle.cpp
  LIBS quilp_bdd ${BUDDY_STATIC_LIBRARY})

quilp_add_test(wood_test
  SOURCES wood_test.cpp
  LIBS quilp_dravik)
