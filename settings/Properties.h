// Properties: a store of typed values by key, for settings, log records, text tables and configuration files.
// Its text form has two lines per entry (LineGrammar.h).
//
// Entries are ordered by the bytes of their keys. Each value is an integer, a string or a byte array, and can
// be read as any of these types (PropertyValue.h defines the conversions). The store owns its values and
// returns copies. It is not thread-safe, except that several threads may read it at the same time.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "platform/files/OpenFile.h"
#include "settings/PropertiesStringObj.h"
#include "settings/PropertyEntry.h"
#include "settings/PropertyValue.h"

namespace dovrel {

class Properties {
  public:
    Properties() = default;
    /// A copy owns the bytes of its entries. It does not keep the text alive from which
    /// the other store was loaded.
    Properties(const Properties& other) : entries_(other.entries_) {}
    Properties(Properties&&) = default;
    Properties& operator=(const Properties& other) { return *this = Properties(other); }
    Properties& operator=(Properties&&) = default;
    virtual ~Properties() = default;

    /// Add a value under a new key. If the key exists already, its value is kept: the first value wins.
    void addInt(const std::string& key, int32_t value);
    void addString(const std::string& key, const std::string& value);
    /// Copies the bytes. `bytes` may be null if `length` is 0. Throws std::bad_alloc on allocation failure.
    void addBinary(const std::string& key, const void* bytes, uint32_t length);
    void addBinary(const std::string& key, const CPPByteArray& value);

    /// Replace the value of an existing key, whatever the type of the old value. Do nothing
    /// if the key does not exist.
    void replaceInt(const std::string& key, int32_t value);
    void replaceString(const std::string& key, const std::string& value);
    void replaceBinary(const std::string& key, const void* bytes, uint32_t length);
    void replaceBinary(const std::string& key, const CPPByteArray& value);

    /// Removes a key. Returns whether it existed.
    bool remove(const std::string& key);
    void clear();

    bool contains(const std::string& key) const;
    size_t size() const { return entries_.size(); }

    /// Return the value of a key, converted to the requested type. A boolean is true if the number is above
    /// 0. Throw a CPPException that names the key if it does not exist.
    int32_t getInt(const std::string& key) const;
    bool getBool(const std::string& key) const;
    std::string getString(const std::string& key) const;
    std::unique_ptr<CPPByteArray> getBinary(const std::string& key) const;

    /// Return the value or key of the entry at an index, counted from 0 in the order of the keys. Negative
    /// indexes count as 0. Throw a CPPException if the index is past the last entry. The time is
    /// proportional to the index.
    std::unique_ptr<CPPByteArray> getBinaryAt(int32_t index) const;
    std::string getKeyAt(int32_t index) const;

    /// Find a key, and store its value in `value`, converted to the requested type. Return false, with
    /// `value` unchanged, if the key does not exist.
    bool findInt(const std::string& key, int32_t& value) const;
    bool findString(const std::string& key, std::string& value) const;
    bool findBinary(const std::string& key, CPPByteArray& value) const;

    /// Returns a value as its value line in the text form, including the type word. Bytes become upper-case
    /// hexadecimal digits on one line. Returns "" for an unknown type.
    static std::string toText(const PropertyValue& value);

    /// Returns a checksum of a text in upper-case hexadecimal digits: the sum of (byte value x position),
    /// modulo 2^32. Positions are counted from 1.
    static std::string keyDigest(const std::string& text);

    /// Replaces the content by the entries of a text. If a key occurs twice, its first entry counts. Entries
    /// of an unknown type are ignored.
    ///
    /// With `throughCursor` the text is not changed. Without it the store takes over the text, which is empty
    /// afterwards. This is faster, because the store refers to the text instead of copying every entry. The
    /// time is proportional to the size of the text.
    void load(std::string& text, bool throughCursor);

    /// Replaces the content by the entries from the cursor's position on. The store copies them, so the text
    /// need not outlive this call.
    void load(PropertiesStringObj& cursor);

    /// Appends the text form of all entries, in the order of the keys.
    void save(std::string& output) const;

    /// Adds a value from its text form: the type of its value line and the text after the type word. Returns
    /// false and adds nothing for an unknown type.
    bool addParsed(std::string_view key, PropertyType type, std::string_view value);

    /// Opens the file with mode "rb". Never returns null. Throws a CPPException that
    /// names the path on failure.
    static OpenFile openForReading(const std::string& path);

  private:
    using Entries = std::set<PropertyEntry, PropertyEntry::KeyOrder>;

    void add(std::string_view key, const PropertyValue& value);
    void addReferring(std::string_view key, PropertyType type, std::string_view value);
    void replace(std::string_view key, const PropertyValue& value);
    bool find(std::string_view key, PropertyValue& value) const;
    PropertyValue get(const std::string& key, const char* typeName) const;
    const PropertyEntry& at(int32_t index) const;

    // The text that the last load took over. Entries refer to it, so it is kept until clear(). It is
    // allocated separately, because moving a short std::string moves its characters and would
    // invalidate the entries' views.
    std::unique_ptr<const std::string> text_;
    Entries entries_;
};

}  // namespace dovrel
