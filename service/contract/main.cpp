// Documents the contract's files: GUIDE WSDL SCHEMA FOLDER ADDRESS, where FOLDER takes the documented ones.
#include "service/contract/contract_files.h"
#include "service/contract/service_guide.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace
{

std::string content_of(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(file), {}};
    if (!file) throw std::runtime_error(path + " can't be read");
    return content;
}

void write(const std::string& path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file) throw std::runtime_error(path + " can't be written");
}

soapwrapper::ServiceGuide guide_in(const std::string& path)
{
    const std::string markdown = content_of(path);
    try {
        return soapwrapper::read_service_guide(markdown);
    } catch (const std::runtime_error& trouble) {
        throw std::runtime_error(path + ": " + trouble.what());
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 6) {
        std::cerr << "usage: " << argv[0] << " GUIDE WSDL SCHEMA FOLDER ADDRESS\n";
        return 2;
    }
    try {
        const soapwrapper::ContractFiles files = soapwrapper::document_contract(
            content_of(argv[2]), content_of(argv[3]), guide_in(argv[1]), argv[5]);
        const std::string folder = argv[4];
        write(folder + "/PSVWSSoapBinding.wsdl", files.wsdl);
        write(folder + "/ns1.xsd", files.schema);
        write(folder + "/operations.txt", files.operations);
        return 0;
    } catch (const std::exception& trouble) {
        std::cerr << "The contract can't be documented: " << trouble.what() << '\n';
        return 1;
    }
}
