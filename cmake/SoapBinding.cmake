# The wire classes, the client proxy and the service skeletons, made from the type header at build time.
set(SOAPWRAPPER_SERVICE_NAMESPACE "urn:tarnholme:psvws" CACHE STRING
    "Namespace URI of the storage service; both sides must agree on it")

find_program(SOAPCPP2 soapcpp2)
find_path(GSOAP_IMPORT_DIR stlvector.h PATHS /usr/share/gsoap/import)
if(NOT SOAPCPP2 OR NOT GSOAP_IMPORT_DIR)
    message(FATAL_ERROR "soapcpp2 and its import files are missing: install the package gsoap")
endif()
pkg_check_modules(GSOAP REQUIRED gsoapssl++)

set(BINDING_DIR ${CMAKE_BINARY_DIR}/binding)
set(BINDING_HEADER ${BINDING_DIR}/soapwrapper.h)
file(MAKE_DIRECTORY ${BINDING_DIR})
configure_file(${CMAKE_SOURCE_DIR}/service/soapwrapper.h.in ${BINDING_HEADER} @ONLY)
file(GLOB SCHEMA_HEADERS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/service/schema/*.h)

set(BINDING_SERVICE ${BINDING_DIR}/soapwrapperPSVWSSoapBindingService.cpp)
set(BINDING_OUTPUTS
    ${BINDING_DIR}/soapwrapperC.cpp
    ${BINDING_DIR}/soapwrapperPSVWSSoapBindingProxy.cpp)
# Named, so that what includes them is compiled again in the build that makes them anew.
set(BINDING_HEADERS
    ${BINDING_DIR}/soapwrapperH.h
    ${BINDING_DIR}/soapwrapperStub.h
    ${BINDING_DIR}/soapwrapperPSVWSSoapBindingProxy.h
    ${BINDING_DIR}/soapwrapperPSVWSSoapBindingService.h)
add_custom_command(
    OUTPUT ${BINDING_OUTPUTS} ${BINDING_SERVICE}
           ${BINDING_DIR}/PSVWSSoapBinding.wsdl ${BINDING_DIR}/ns1.xsd
    BYPRODUCTS ${BINDING_HEADERS}
    COMMAND ${SOAPCPP2} -1 -i -x -psoapwrapper -I${CMAKE_SOURCE_DIR}/service:${GSOAP_IMPORT_DIR}
            -d${BINDING_DIR} ${BINDING_HEADER} > ${BINDING_DIR}/soapcpp2.log
    DEPENDS ${BINDING_HEADER} ${SCHEMA_HEADERS}
    COMMENT "Generating the SOAP binding"
    VERBATIM)

# The generated code is not ours to warn about. It is position independent and hidden, so that the same
# objects serve the library, the tests and the simulator.
add_library(soapwrapper_binding OBJECT ${BINDING_OUTPUTS} ${CMAKE_SOURCE_DIR}/service/wire_text.cpp)
set_source_files_properties(${BINDING_OUTPUTS} ${BINDING_SERVICE} PROPERTIES COMPILE_OPTIONS "-w")
# Texts are read and written by functions of ours, which know what to do with broken UTF-8.
set_property(SOURCE ${BINDING_OUTPUTS} PROPERTY COMPILE_DEFINITIONS
    soap_string_in=soapwrapper_string_in soap_string_out=soapwrapper_string_out)
target_include_directories(soapwrapper_binding PRIVATE ${CMAKE_SOURCE_DIR})
target_include_directories(soapwrapper_binding SYSTEM PUBLIC ${BINDING_DIR})
target_compile_options(soapwrapper_binding PUBLIC ${GSOAP_CFLAGS_OTHER} ${GSOAP_CFLAGS})
target_link_libraries(soapwrapper_binding PRIVATE soapwrapper_hardening soapwrapper_warnings)

# The runtime is linked statically: the distribution's shared one takes its namespace table from whichever
# plug-in was loaded first.
add_library(soapwrapper_soap_runtime INTERFACE)
target_link_libraries(soapwrapper_soap_runtime INTERFACE -l:libgsoapssl++.a OpenSSL::SSL OpenSSL::Crypto ZLIB::ZLIB)
