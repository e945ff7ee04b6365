# Read by CPack at its start. It asks this for the packages of the libraries that its files need.
set(SHLIBDEPS_EXECUTABLE "${CMAKE_CURRENT_LIST_DIR}/shlibdeps-of-program")
