#pragma once

#include "host/objects/journal.h"
#include "host/objects/object.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace zentrix::host {

/// The library's references to host objects. What the library gets as host_object* is a number that is never given out
/// twice and is no address, so a pointer that is foreign, stale or released once too often is recognised for certain
/// and never followed. Breaches go to the journal. Main thread only.
class handle_table
{
  public:
    explicit handle_table(journal& told) : journal_{told} {}

    /// Hands an object over, counted for the library; null stays null. An object keeps its handle as long as the
    /// library holds or is lent it.
    host_object* give(const object_ref& given);
    /// Takes back one reference that the library held and passed on; null for null.
    /// Throws  script_error (and records a violation) when the library had none
    object_ref take(host_object* handle);
    /// The object that the library means; null for null.
    /// Throws  script_error (and records a violation) for anything that the library does not hold and was not lent
    object_ref get(host_object* handle);

    /// The contract's counting; null is ignored, breaches are recorded.
    void add_reference(host_object* handle);
    void release(host_object* handle);

    /// Lends an object to the library until take_back: valid meanwhile without being counted.
    host_object* lend(const object_ref& lent);
    void take_back(host_object* handle);

    /// One line for each object that the library holds: what it is and how many references.
    std::vector<std::string> held() const;
    /// Gives back everything that the library holds.
    void forget();

  private:
    struct entry
    {
        object_ref held;
        std::uint64_t references = 0;
        std::uint64_t lent = 0;
    };

    host_object* handle_of(const object_ref& wanted);
    entry* find(host_object* handle, const char* doing);
    entry& require(host_object* handle, const char* doing);
    void drop_if_unused(host_object* handle);

    journal& journal_;
    std::unordered_map<std::uint64_t, entry> entries_;
    std::unordered_map<const object*, std::uint64_t> handles_;
    std::uint64_t next_ = 1;
};

}  // namespace zentrix::host
