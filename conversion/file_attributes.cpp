#include "conversion/file_attributes.h"

#include "conversion/field_text.h"
#include "plugin/host/host_records.h"

#include "soapwrapperStub.h"

namespace soapwrapper
{
namespace
{

template <class Field, class Element>
void set_number(Field& field, const Element* element)
{
    static_assert(sizeof(Field) == sizeof(Element), "numbers pass bit for bit");
    field = element ? *element : 0;
}

} // namespace

void set_file_attr_from_soap(sts_file_attr_v11_t& file, const ns1__FileAttr* wire)
{
    if (!wire) return;
    set_text(file.name, wire->name);
    set_number(file.ftype, wire->ftype);
    set_number(file.changetype, wire->changetype);
    set_number(file.modtime, wire->modtime);
    set_number(file.accesstime, wire->accesstime);
    set_number(file.createtime, wire->createtime);
    set_number(file.changetime, wire->changetime);
    set_number(file.size, wire->size);
    set_number(file.ownerid, wire->ownerid);
    set_number(file.groupid, wire->groupid);
    set_number(file.permissions, wire->permissions);
    set_number(file.inode, wire->inode);
    set_number(file.gnum, wire->gnum);
}

} // namespace soapwrapper
