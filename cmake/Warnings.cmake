# Our own code compiles without a warning; the generated binding is compiled with none. That a warning is an error is
# for those who change the code: a compiler that is newer than ours must not keep a user from building.
option(SOAPWRAPPER_WARNINGS_AS_ERRORS "Treat warnings in our own code as errors" OFF)
add_library(soapwrapper_warnings INTERFACE)
target_compile_options(soapwrapper_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2 -Wundef
    $<$<BOOL:${SOAPWRAPPER_WARNINGS_AS_ERRORS}>:-Werror>
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>
    $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes>)
