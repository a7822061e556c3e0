#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/repository/Names.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

/// Requests as clients write them, for tests.
namespace cimhost {

/// `inside` in CIM and MESSAGE.
std::string envelope(std::string_view inside);

/// A whole IMETHODCALL document; `parameters` are its IPARAMVALUE elements.
std::string intrinsicRequest(std::string_view operation, std::string_view parameters = {},
                             std::string_view nameSpace = "root/test");

/// LOCALNAMESPACEPATH.
std::string nameSpacePath(std::string_view nameSpace = "root/test");

/// One IPARAMVALUE.
std::string parameter(std::string_view name, std::string_view content);
std::string booleanParameter(std::string_view name, bool value);

/// INSTANCENAME with one string key.
std::string instanceName(std::string_view className, std::string_view key, std::string_view value);

/// The text as it stands in a document.
std::string escaped(std::string_view text);

std::string repeated(std::string_view text, std::size_t count);

/// A complete and valid request.
std::string getInstanceRequest();

/// A request with its headers. Its own storage must outlive what is made of it.
struct TestRequest {
    std::map<std::string, std::string, NameLess> headers;
    std::string body;

    /// As the handler takes it.
    CimXmlRequest view() const;
};

/// With the headers that go with the body.
TestRequest intrinsic(std::string_view operation, std::string_view parameters = {},
                      std::string_view nameSpace = "root/test");

/// `target` is INSTANCENAME or CLASSNAME; `object` is the CIMObject header.
TestRequest extrinsic(std::string_view method, std::string_view target, std::string_view object,
                      std::string_view parameters = {});

/// The parameter ClassName.
std::string className(std::string_view name);

/// Keeps what it is told. Commits like a server does when more than `hold` bytes have come.
class RecordingReply : public CimXmlReply {
public:
    explicit RecordingReply(std::size_t hold = 64 * 1024) : _hold(hold) {}

    void refuse(int newStatus, std::string_view newCimError) override;
    void write(std::string_view text) override;
    bool restart() override;
    void noteFailure(int code) override { notedCode = code; }
    void fail(int code, std::string_view description) override;

    std::optional<int> status;  ///< of a refusal
    std::string cimError;
    std::string body;
    std::size_t writes = 0;
    std::size_t largestWrite = 0;
    std::optional<int> notedCode;
    std::optional<int> failureCode;
    std::string failureText;

private:
    std::size_t _hold;
};

}  // namespace cimhost
