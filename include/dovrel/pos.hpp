/// @file
/// Dovrel for hosts in C++17 that are linked with the library. Everything is in this header, on top of the
/// functions in dovrel/pos.h, whose contracts hold here as well (threads, blocking, alerts, forked processes).
///
///     pos::Session session;
///     constexpr pos::Identifier digest = pos::makeIdentifier("Digest");
///     pos::Application application(session, "My program", {digest});
///     pos::Object object = application.create(digest);
///     pos::Bytes result = object.call("md5", "the data");
///     std::cout << result.text() << '\n';
///
/// A call that fails throws pos::Failure; the library has shown the reason to the user by then. The objects of
/// this header own what the library has created for the host, can be moved but not copied, and allocate no
/// memory of their own. If they are declared as above, they are destroyed in the right order: objects, then
/// applications, then the session. No object may be used by two threads at the same time.
#ifndef DOVREL_POS_HPP
#define DOVREL_POS_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>

#include "dovrel/pos.h"

/// The classes for hosts in C++17.
namespace pos {

/// A call has failed.
class Failure : public std::exception {
  public:
    /// `what` is a text that exists as long as the program.
    explicit Failure(const char* what) noexcept : what_(what) {}

    /// Returns which call has failed, for developers. The user has seen the reason.
    const char* what() const noexcept override { return what_; }

  private:
    const char* what_;
};

/// The 16 bytes that identify a class, an object or an executer.
using Identifier = std::array<std::uint8_t, POS_IDENTIFIER_SIZE>;

/// Returns the identifier that consists of `name` and zero bytes, like those of the development server's
/// classes. Throws a Failure if `name` has more than 16 bytes.
constexpr Identifier makeIdentifier(std::string_view name) {
    Identifier identifier{};
    if (name.size() > identifier.size()) throw Failure("an identifier has at most 16 bytes");
    for (std::size_t index = 0; index < name.size(); ++index)
        identifier[index] = static_cast<std::uint8_t>(name[index]);
    return identifier;
}

/// Bytes of the host that are sent to the server. Refers to the bytes and does not copy them. Can be made of
/// everything that has elements of one byte in one piece: a text, a std::vector, a std::array.
class View {
  public:
    constexpr View() noexcept = default;
    /// Refers to `size` bytes from `data` on. `data` may be null if `size` is 0.
    constexpr View(const void* data, std::size_t size) noexcept : data_(data), size_(size) {}
    /// Refers to a text without its NUL character. Null counts as "".
    constexpr View(const char* text) noexcept
        : View(text != nullptr ? std::string_view(text) : std::string_view()) {}

    /// Refers to the elements of a container, which have one byte each.
    template <typename Container,
              typename = std::enable_if_t<sizeof(*std::declval<const Container&>().data()) == 1>>
    constexpr View(const Container& container) noexcept : data_(container.data()), size_(container.size()) {}

    /// Returns the first byte; null for no bytes.
    constexpr const void* data() const noexcept { return data_; }

    /// Returns the number of bytes. Throws a Failure if it does not fit into 32 bits.
    constexpr std::uint32_t size() const {
        if (size_ > std::numeric_limits<std::uint32_t>::max()) throw Failure("more than 4 GiB to send");
        return static_cast<std::uint32_t>(size_);
    }

  private:
    const void* data_ = nullptr;
    std::size_t size_ = 0;
};

/// Bytes that the server has returned. Owns the library's block.
class Bytes {
  public:
    /// No bytes.
    Bytes() noexcept = default;

    /// Takes over a block that the library has returned. It may be null.
    Bytes(std::uint8_t* data, std::size_t size) noexcept : data_(data), size_(size) {}

    /// Returns the first byte; null for no bytes.
    const std::uint8_t* data() const noexcept { return data_.get(); }
    /// Returns the number of bytes.
    std::size_t size() const noexcept { return data_ != nullptr ? size_ : 0; }
    /// Returns whether there are no bytes.
    bool empty() const noexcept { return size() == 0; }
    /// Returns the first byte, for loops.
    const std::uint8_t* begin() const noexcept { return data(); }
    /// Returns the end of the bytes, for loops.
    const std::uint8_t* end() const noexcept { return data() + size(); }

    /// Returns the bytes as a text, which is valid as long as this object.
    std::string_view text() const noexcept {
        return empty() ? std::string_view() : std::string_view(reinterpret_cast<const char*>(data()), size());
    }

  private:
    struct Deleter {
        void operator()(std::uint8_t* data) const noexcept { posDeleteDLLHeapData(data); }
    };

    std::unique_ptr<std::uint8_t, Deleter> data_;
    std::size_t size_ = 0;
};

namespace detail {

inline void require(std::uint32_t status, const char* failure) {
    if (status != POS_OK) throw Failure(failure);
}

// The functions in C take pointers to data that they do not change.
inline void* withoutConst(const void* data) noexcept {
    return const_cast<void*>(data);
}

inline Bytes fetchInformation(std::uint32_t application, View request) {
    std::uint8_t* data = nullptr;
    std::int32_t size = 0;
    // The request must not be null, even if it is empty.
    const void* const bytes = request.data() != nullptr ? request.data() : "";
    require(posGetInfo(application, bytes, request.size(), &data, &size), "posGetInfo failed");
    return Bytes(data, static_cast<std::size_t>(size));
}

}  // namespace detail

/// The session of this process. Must be destroyed after all applications and objects. There must not be two
/// sessions at the same time, because the first one that is destroyed closes the session of both.
class Session {
  public:
    /// Opens the session. Sends nothing. Throws a Failure if memory or the system's locks run out, or in a
    /// process that was forked from one with an open session.
    Session() {
        std::uint32_t status = POS_FAILURE;
        try {
            status = InitializePOS();
        } catch (...) {
            // The function throws different types on different systems, so every exception becomes a Failure.
        }
        detail::require(status, "InitializePOS failed");
    }
    /// Takes over the session. The other one is empty afterwards.
    Session(Session&& other) noexcept : isOpen_(std::exchange(other.isOpen_, false)) {}
    /// Takes over the session. There is only one in a process, so it stays open if both have it.
    Session& operator=(Session&& other) noexcept {
        if (this != &other) isOpen_ = std::exchange(other.isOpen_, false) || isOpen_;
        return *this;
    }

    /// Closes the session and unregisters the applications that are still registered.
    ~Session() {
        if (isOpen_) TerminatePOS();
    }

    /// Returns the version of the interface between library and server. Needs no server. Throws a Failure.
    std::uint32_t interfaceVersion() const {
        const std::array<std::uint8_t, 2> request = {0x60, 0x01};
        const Bytes bytes = information(request);
        std::uint32_t version = 0;
        for (std::size_t index = bytes.size(); index > 0; --index)
            version = version << 8 | bytes.data()[index - 1];
        return version;
    }

    /// Fetches a block of information that belongs to no application. Throws a Failure.
    Bytes information(View request) const { return detail::fetchInformation(0, request); }

  private:
    bool isOpen_ = true;
};

/// An object in the server. Made by Application::create.
class Object {
  public:
    /// Takes over the object. The other one is empty afterwards.
    Object(Object&&) noexcept = default;
    /// Gives up its own object as the destructor does, and takes over the other one.
    Object& operator=(Object&& other) noexcept {
        Object taken(std::move(other));
        std::swap(application_, taken.application_);
        identifier_.swap(taken.identifier_);
        return *this;
    }

    /// Deletes the object in the server. A failure is shown to the user and otherwise ignored.
    ~Object() {
        void* identifier = identifier_.get();
        if (identifier != nullptr) posDeleteObject(application_, &identifier);
    }

    /// Calls a method and returns its result. Throws a Failure.
    Bytes call(const char* method, View parameters = {}) { return callOn(nullptr, method, parameters); }

    /// Does the same on an executer. Throws a Failure.
    Bytes call(const Identifier& executer, const char* method, View parameters = {}) {
        return callOn(executer.data(), method, parameters);
    }

    /// Deletes the object in the server. Throws a Failure; the object is given up all the same.
    void destroy() {
        const Block block = std::move(identifier_);
        void* identifier = block.get();
        detail::require(posDeleteObject(application_, &identifier), "posDeleteObject failed");
    }

    /// Gives up the object without a call, for example because its server has ended.
    void forget() noexcept { identifier_.reset(); }

  private:
    friend class Application;

    struct Deleter {
        void operator()(void* block) const noexcept { posFreeDllHeapData(block); }
    };
    using Block = std::unique_ptr<void, Deleter>;

    Object(std::uint32_t application, void* identifier) noexcept
        : application_(application), identifier_(identifier) {}

    Bytes callOn(const void* executer, const char* method, View parameters) {
        void* executerId = detail::withoutConst(executer);
        void* identifier = identifier_.get();
        auto* const data = static_cast<std::uint8_t*>(detail::withoutConst(parameters.data()));
        std::uint8_t* result = nullptr;
        std::uint32_t size = 0;
        detail::require(posCallMethodOnExecuter(application_, &executerId, &identifier, method, data,
                                                parameters.size(), &result, &size),
                        "posCallMethod failed");
        return Bytes(result, size);
    }

    std::uint32_t application_;
    Block identifier_;
};

/// An application that is registered with the server.
class Application {
  public:
    /// Registration options: codes POS_OPTION_...
    using Options = std::initializer_list<std::uint16_t>;

    /// Registers an application with the classes in braces, such as {digest, counter}. `options` are codes
    /// POS_OPTION_... Launches the server if necessary. Throws a Failure.
    template <std::size_t count>
    Application(const Session& session, const char* name, const Identifier (&classes)[count],
                Options options = {}) {
        std::array<void*, count> pointers{};
        for (std::size_t index = 0; index < count; ++index)
            pointers[index] = detail::withoutConst(classes[index].data());
        registerWith(session, name, pointers.data(), count, options);
    }

    /// Registers an application with `count` classes, each given by a pointer to its 16 bytes. Throws
    /// a Failure.
    Application(const Session& session, const char* name, void** classes = nullptr, std::uint32_t count = 0,
                Options options = {}) {
        registerWith(session, name, classes, count, options);
    }

    /// Takes over the application. The other one is empty afterwards.
    Application(Application&& other) noexcept
        : id_(other.id_), isRegistered_(std::exchange(other.isRegistered_, false)) {}
    /// Gives up its own application as the destructor does, and takes over the other one.
    Application& operator=(Application&& other) noexcept {
        Application taken(std::move(other));
        std::swap(id_, taken.id_);
        std::swap(isRegistered_, taken.isRegistered_);
        return *this;
    }

    /// Unregisters the application. A failure is shown to the user and otherwise ignored.
    ~Application() {
        if (isRegistered_) posUnregisterApplication(id_);
    }

    /// Returns the number that the server has given to the application.
    std::uint32_t id() const noexcept { return id_; }

    /// Creates an object of a class. Throws a Failure.
    Object create(const Identifier& classId) {
        void* pointer = detail::withoutConst(classId.data());
        void* object = nullptr;
        detail::require(posInstantiateObject(id_, &pointer, &object), "posInstantiateObject failed");
        return Object(id_, object);
    }

    /// Runs a command in the server and returns its result. Throws a Failure.
    Bytes run(View command, View argument = {}) {
        void* commandBytes = detail::withoutConst(command.data());
        void* argumentBytes = detail::withoutConst(argument.data());
        std::uint8_t* result = nullptr;
        std::uint32_t size = 0;
        detail::require(posExecuteCMD(id_, &commandBytes, command.size(), &argumentBytes, argument.size(),
                                      &result, &size),
                        "posExecuteCMD failed");
        return Bytes(result, size);
    }

    /// Fetches a block of information from the server. Throws a Failure.
    Bytes information(View request) const { return detail::fetchInformation(id_, request); }

    /// Unregisters the application; its objects cannot be used any more. Throws a Failure, and then the
    /// application stays registered.
    void unregister() {
        detail::require(posUnregisterApplication(id_), "posUnregisterApplication failed");
        isRegistered_ = false;
    }

    /// Gives up the application without a call, for example because its server has ended.
    void forget() noexcept { isRegistered_ = false; }

  private:
    void registerWith(const Session&, const char* name, void** classes, std::size_t count, Options options) {
        auto* const codes = static_cast<std::uint16_t*>(detail::withoutConst(options.begin()));
        const View bytes(options.begin(), options.size() * sizeof(std::uint16_t));
        detail::require(posRegisterApplicationWithClasses(name, classes, static_cast<std::uint32_t>(count),
                                                          codes, bytes.size(), &id_),
                        "posRegisterApplicationWithClasses failed");
        isRegistered_ = true;
    }

    std::uint32_t id_ = 0;
    bool isRegistered_ = false;
};

}  // namespace pos

#endif
