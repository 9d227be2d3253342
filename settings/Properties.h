// Properties: a store of typed values by key, for settings, log records, text tables and configuration files,
// with a text form of two lines per entry (LineGrammar.h).
//
// Keys are compared by their bytes and kept in that order. Each value is an integer, a string or a byte array
// and can be read as any of the three (PropertyValue.h tells how). The store owns its values and hands out
// copies. It is not synchronised: one thread at a time, unless all of them only read.
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
    /// A copy owns the bytes of its entries and does not keep the text alive that the other store was loaded
    /// from.
    Properties(const Properties& other) : entries_(other.entries_) {}
    Properties(Properties&&) = default;
    Properties& operator=(const Properties& other) { return *this = Properties(other); }
    Properties& operator=(Properties&&) = default;
    virtual ~Properties() = default;

    /// Enter a value under a key that is not there yet. A key that is keeps its value: the first one wins.
    void addInt(const std::string& key, int32_t value);
    void addString(const std::string& key, const std::string& value);
    /// Copies the bytes; `bytes` may be null when `length` is 0. std::bad_alloc when they find no room.
    void addBinary(const std::string& key, const void* bytes, uint32_t length);
    void addBinary(const std::string& key, const CPPByteArray& value);

    /// Give a key that is there a new value, whatever the type of its old one. Nothing happens when it is not
    /// there.
    void replaceInt(const std::string& key, int32_t value);
    void replaceString(const std::string& key, const std::string& value);
    void replaceBinary(const std::string& key, const void* bytes, uint32_t length);
    void replaceBinary(const std::string& key, const CPPByteArray& value);

    /// Whether the key was there.
    bool remove(const std::string& key);
    void clear();

    bool contains(const std::string& key) const;
    size_t size() const { return entries_.size(); }

    /// The value of a key in the type asked for; a boolean is true for numbers above 0. Throw a CPPException
    /// that names the key when it is not there.
    int32_t getInt(const std::string& key) const;
    bool getBool(const std::string& key) const;
    std::string getString(const std::string& key) const;
    std::unique_ptr<CPPByteArray> getBinary(const std::string& key) const;

    /// The entry at a position in the order of the keys, counted from 0; all negative positions count as 0.
    /// Throw a CPPException past the last entry. Takes time in proportion to the position.
    std::unique_ptr<CPPByteArray> getBinaryAt(int32_t index) const;
    std::string getKeyAt(int32_t index) const;

    /// The value of a key in the type asked for. False, and the output as it was, when the key is not there.
    bool findInt(const std::string& key, int32_t& value) const;
    bool findString(const std::string& key, std::string& value) const;
    bool findBinary(const std::string& key, CPPByteArray& value) const;

    /// A value as it stands on its line in the text form, type word included; bytes as upper-case hexadecimal
    /// digits on the one line. "" for an unknown type.
    static std::string toText(const PropertyValue& value);

    /// A number over the characters of a text and their places: the sum of (byte value x position from 1) in
    /// 32 bits, in upper-case hexadecimal digits.
    static std::string keyDigest(const std::string& text);

    /// Replaces the content by the entries of a text. Of entries with one key the first counts; entries of an
    /// unknown type are dropped. With `throughCursor` the text stays as it is; without it the text is used up
    /// and empty afterwards, which is the faster way, because the store then keeps the text and need not copy
    /// it piece by piece. Takes time in proportion to the size of the text.
    void load(std::string& text, bool throughCursor);

    /// Replaces the content by the entries that the cursor has before it. The store copies them and needs the
    /// text no more.
    void load(PropertiesStringObj& cursor);

    /// Appends the text form of all entries, in the order of the keys.
    void save(std::string& output) const;

    /// Enters a value as a text form holds it, with the type of its value line and the text behind the type
    /// word. False, and nothing entered, for an unknown type.
    bool addParsed(std::string_view key, PropertyType type, std::string_view value);

    /// The file opened with mode "rb"; never null. Throws a CPPException that names the path when that fails.
    static OpenFile openForReading(const std::string& path);

  private:
    using Entries = std::set<PropertyEntry, PropertyEntry::KeyOrder>;

    void add(std::string_view key, const PropertyValue& value);
    void addReferring(std::string_view key, PropertyType type, std::string_view value);
    void replace(std::string_view key, const PropertyValue& value);
    bool find(std::string_view key, PropertyValue& value) const;
    PropertyValue get(const std::string& key, const char* typeName) const;
    const PropertyEntry& at(int32_t index) const;

    // The text that the last load used up: entries refer to it, so it stays until clear. At one place for its
    // whole life, because the views of a short text would not survive a move of the string itself.
    std::unique_ptr<const std::string> text_;
    Entries entries_;
};

}  // namespace dovrel
