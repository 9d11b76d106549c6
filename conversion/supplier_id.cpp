#include "conversion/supplier_id.h"

#include "conversion/field_text.h"
#include "plugin/host/host_records.h"

#include <string>
#include <utility>

#include "soapwrapperStub.h"

namespace soapwrapper
{

ns1__IndependentSupplierId* new_supplier_id(const sts_isid_t& isid)
{
    auto* info = new xsd__base64Binary();
    // The binding only reads the bytes that it sends.
    info->__ptr = reinterpret_cast<unsigned char*>(const_cast<char*>(isid.info));
    info->__size = static_cast<int>(text_of(isid.info).size());

    auto* wire = new ns1__IndependentSupplierId();
    wire->version = isid.version;
    wire->dpaid = new std::string(text_of(isid.dpaid));
    wire->dpaver = new std::string(text_of(isid.dpaver));
    wire->info = info;
    return wire;
}

void delete_supplier_id(ns1__IndependentSupplierId*& isid)
{
    if (!isid) return;
    delete std::exchange(isid->dpaid, nullptr);
    delete std::exchange(isid->dpaver, nullptr);
    delete std::exchange(isid->info, nullptr);
    delete std::exchange(isid, nullptr);
}

} // namespace soapwrapper
