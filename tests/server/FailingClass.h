// A class whose methods throw exceptions.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "server/ServerClass.h"

namespace merrowd::test {

class FailingClass : public ServerClass {
  public:
    using Action = std::function<void()>;

    /// The method "fail" runs `fail`. With `failsInCreation` the creation of an object runs it as well. The
    /// method "work" returns "done".
    explicit FailingClass(Action fail, bool failsInCreation = false)
        : fail_(std::move(fail)), failsInCreation_(failsInCreation) {}

    std::string name() const override { return "Failing"; }
    std::vector<std::string> methods() const override { return {"fail", "work"}; }

    std::unique_ptr<ServerObject> instantiate(const Caller&, UserMessage&) const override {
        if (failsInCreation_) fail_();
        return std::make_unique<Instance>(fail_);
    }

  private:
    class Instance : public ServerObject {
      public:
        explicit Instance(const Action& fail) : fail_(fail) {}

        MethodResult call(const std::string& method, CPPByteArray, const Caller&) override {
            if (method == "fail") fail_();
            return MethodResult(toBytes("done"));
        }

      private:
        const Action fail_;
    };

    const Action fail_;
    const bool failsInCreation_;
};

}  // namespace merrowd::test
