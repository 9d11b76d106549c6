# The WSDL and the schema as they are installed and served: those that are made with the binding, documented from the guide.
# The binding itself is made from what has no documentation: texts would change what is compiled.
set(CONTRACT_DIR ${CMAKE_BINARY_DIR}/contract)
set(CONTRACT_FILES ${CONTRACT_DIR}/PSVWSSoapBinding.wsdl ${CONTRACT_DIR}/ns1.xsd ${CONTRACT_DIR}/operations.txt)
# Where the library looks for a service without TLS.
set(CONTRACT_ADDRESS http://localhost:8085)
file(MAKE_DIRECTORY ${CONTRACT_DIR})

add_subdirectory(service/contract)
add_custom_command(
    OUTPUT ${CONTRACT_FILES}
    COMMAND soapwrapper_document_contract ${CMAKE_SOURCE_DIR}/docs/service.md
            ${BINDING_DIR}/PSVWSSoapBinding.wsdl ${BINDING_DIR}/ns1.xsd ${CONTRACT_DIR} ${CONTRACT_ADDRESS}
    DEPENDS soapwrapper_document_contract ${CMAKE_SOURCE_DIR}/docs/service.md
            ${BINDING_DIR}/PSVWSSoapBinding.wsdl ${BINDING_DIR}/ns1.xsd
    COMMENT "Documenting the contract"
    VERBATIM)
add_custom_target(soapwrapper_contract_files ALL DEPENDS ${CONTRACT_FILES})
