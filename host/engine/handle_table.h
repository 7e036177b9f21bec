#pragma once

#include "host/objects/journal.h"
#include "host/objects/object.h"

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace zentrix::host {

/// The library's references to host objects. The host_object* that the library receives is a number that is never
/// reused and is not an address. A foreign pointer, a stale one and one release too many are therefore always detected,
/// and no handle is ever followed. Breaches are recorded in the journal. Any thread.
class handle_table
{
  public:
    explicit handle_table(journal& records) : records_{records} {}

    /// Returns a handle with one reference for the library; null for null. An object keeps its handle while the library
    /// has references to it or is lent it.
    host_object* give(const object_ref& object);
    /// Takes over one reference of the library; null for null.
    /// Throws  script_error, and records a violation, when the library has no reference to it
    object_ref take(host_object* handle);
    /// The object of a handle; null for null.
    /// Throws  script_error, and records a violation, when the library neither has a reference to it nor is lent it
    object_ref get(host_object* handle);

    /// Reference counting by the library. Null is ignored; breaches are recorded.
    void add_reference(host_object* handle);
    void release(host_object* handle);

    /// Lends an object: the library may use the handle without a reference until end_loan.
    host_object* lend(const object_ref& object);
    void end_loan(host_object* handle);

    /// A line for each object that the library has references to: its description and their number.
    std::vector<std::string> held() const;
    /// Drops all references of the library.
    void forget();

  private:
    struct entry
    {
        object_ref held;
        std::uint64_t references = 0;
        std::uint64_t loans = 0;
    };

    host_object* handle_of(const object_ref& object);
    entry* find(host_object* handle, const char* action);
    entry& require(host_object* handle, const char* action);
    /// Returns the object if the table has dropped it. To be destroyed without the lock: it may call this table.
    [[nodiscard]] object_ref drop_if_unused(host_object* handle);
    [[nodiscard]] object_ref release_one(host_object* handle);

    mutable std::mutex access_;
    journal& records_;
    std::unordered_map<std::uint64_t, entry> entries_;
    std::unordered_map<const object*, std::uint64_t> handles_;
    std::uint64_t next_ = 1;
};

}  // namespace zentrix::host
