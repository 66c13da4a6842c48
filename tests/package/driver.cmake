# Included by CMake after project() of the example host. Adds the driver, which the unchanged host needs to run unattended.

set(driver ${CMAKE_CURRENT_LIST_DIR}/driver.cpp)
cmake_language(DEFER CALL target_sources host PRIVATE ${driver})
