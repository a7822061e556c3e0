#include "tests/cimhost/cimxml/Requests.h"

#include "cimhost/cimxml/XmlBuffer.h"

#include <algorithm>

namespace cimhost {

std::string envelope(std::string_view inside) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\" ?>\n<CIM CIMVERSION=\"2.0\" "
           "DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\">" +
           std::string(inside) + "</MESSAGE></CIM>\n";
}

std::string nameSpacePath(std::string_view nameSpace) {
    std::string path = "<LOCALNAMESPACEPATH>";
    while (!nameSpace.empty()) {
        const std::size_t slash = std::min(nameSpace.find('/'), nameSpace.size());
        path += "<NAMESPACE NAME=\"" + std::string(nameSpace.substr(0, slash)) + "\"/>";
        nameSpace.remove_prefix(std::min(slash + 1, nameSpace.size()));
    }
    return path + "</LOCALNAMESPACEPATH>";
}

std::string intrinsicRequest(std::string_view operation, std::string_view parameters,
                             std::string_view nameSpace) {
    return envelope("<SIMPLEREQ><IMETHODCALL NAME=\"" + std::string(operation) + "\">" +
                    nameSpacePath(nameSpace) + std::string(parameters) +
                    "</IMETHODCALL></SIMPLEREQ>");
}

std::string parameter(std::string_view name, std::string_view content) {
    return "<IPARAMVALUE NAME=\"" + std::string(name) + "\">" + std::string(content) +
           "</IPARAMVALUE>";
}

std::string booleanParameter(std::string_view name, bool value) {
    return parameter(name, value ? "<VALUE>TRUE</VALUE>" : "<VALUE>FALSE</VALUE>");
}

std::string instanceName(std::string_view className, std::string_view key, std::string_view value) {
    return "<INSTANCENAME CLASSNAME=\"" + std::string(className) + "\"><KEYBINDING NAME=\"" +
           std::string(key) + "\"><KEYVALUE VALUETYPE=\"string\">" + std::string(value) +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

std::string escaped(std::string_view text) {
    XmlBuffer buffer;
    buffer.text(text);
    return std::string(buffer.view());
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) result += text;
    return result;
}

std::string getInstanceRequest() {
    return intrinsicRequest("GetInstance",
                            parameter("InstanceName", instanceName("TEST_Fan", "Id", "f1")) +
                                booleanParameter("IncludeClassOrigin", true));
}

CimXmlRequest TestRequest::view() const {
    CimXmlRequest request;
    request.header = [this](std::string_view name) -> std::optional<std::string_view> {
        const auto found = headers.find(name);
        if (found == headers.end()) return std::nullopt;
        return found->second;
    };
    request.body = body;
    request.host = "localhost:5988";
    request.principal = "tester";
    return request;
}

TestRequest intrinsic(std::string_view operation, std::string_view parameters,
                      std::string_view nameSpace) {
    return {{{"CIMOperation", "MethodCall"},
             {"CIMMethod", std::string(operation)},
             {"CIMObject", std::string(nameSpace)}},
            intrinsicRequest(operation, parameters, nameSpace)};
}

TestRequest extrinsic(std::string_view method, std::string_view target, std::string_view object,
                      std::string_view parameters) {
    const std::string path =
        target.starts_with("<CLASSNAME") ? "LOCALCLASSPATH>" : "LOCALINSTANCEPATH>";
    return {{{"CIMOperation", "MethodCall"},
             {"CIMMethod", std::string(method)},
             {"CIMObject", std::string(object)}},
            envelope("<SIMPLEREQ><METHODCALL NAME=\"" + std::string(method) + "\"><" + path +
                     nameSpacePath() + std::string(target) + "</" + path + std::string(parameters) +
                     "</METHODCALL></SIMPLEREQ>")};
}

std::string className(std::string_view name) {
    return parameter("ClassName", "<CLASSNAME NAME=\"" + std::string(name) + "\"/>");
}

void RecordingReply::refuse(int newStatus, std::string_view newCimError) {
    status = newStatus;
    cimError = newCimError;
}

void RecordingReply::write(std::string_view text) {
    body += text;
    ++writes;
    largestWrite = std::max(largestWrite, text.size());
}

bool RecordingReply::restart() {
    if (body.size() > _hold) return false;
    body.clear();
    return true;
}

void RecordingReply::fail(int code, std::string_view description) {
    failureCode = code;
    failureText = description;
}

}  // namespace cimhost
