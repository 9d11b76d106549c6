// The registry as the entries use it. A token may be made of a password, so no copy of one outlives its use.
#ifndef SOAPWRAPPER_CHANGELIST_OPEN_LISTS_H
#define SOAPWRAPPER_CHANGELIST_OPEN_LISTS_H

#include "changelist/session_registry.h"

namespace soapwrapper
{

// Files what the listing will need. A list that is already there under this token keeps what it has.
void register_list(const char* token, snapdiff_session_info&& info);

// Takes the record of the token out of the registry, if there is one. A listing that is under way keeps the
// record to its end.
void unregister_list(const char* token);

// One listing's hold on a record. Lists with one token share a record, and their threads know nothing of each
// other: while one lists, a close of the other doesn't end the record, and no second listing gets at it.
class Listing
{
  public:
    // Takes the token's record, or makes an empty one for a list that nobody filed.
    explicit Listing(const char* token);
    ~Listing();
    Listing(const Listing&) = delete;
    Listing& operator=(const Listing&) = delete;

    // Null while another listing has the record.
    snapdiff_session_info* info() const { return info_; }

  private:
    friend void unregister_list(const char* token);

    // The first of those under way, each on the stack of its thread. Under snapdiff_session_map_mutex.
    static Listing* first;

    static Listing* find(const snapdiff_session_info& info);

    snapdiff_session_info* info_ = nullptr;
    Listing* next_ = nullptr;
    decltype(snapdiff_info_per_session)::node_type closed_; // the record, once its list is closed
};

} // namespace soapwrapper

#endif
