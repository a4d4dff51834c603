// How an operation fails, and how a request that is none.
#pragma once

#include <stdexcept>
#include <string>

namespace cimxml {

// Status codes of DSP0200, 5.3.1 and annex B.
enum class ErrorCode : unsigned {
    Failed = 1,
    AccessDenied = 2,
    InvalidNamespace = 3,
    InvalidParameter = 4,
    InvalidClass = 5,
    NotFound = 6,
    NotSupported = 7,
    AlreadyExists = 11,
    NoSuchProperty = 12,
    TypeMismatch = 13,
    QueryLanguageNotSupported = 14,
    MethodNotAvailable = 16,
    MethodNotFound = 17,
    NamespaceNotEmpty = 20,
    InvalidEnumerationContext = 21,
    InvalidOperationTimeout = 22,
    ContinuationOnErrorNotSupported = 26,
    ServerLimitsExceeded = 27,
    LastCode = 28
};

// Thrown to answer the operation with an ERROR element.
class CimError : public std::runtime_error {
public:
    CimError(ErrorCode errorCode, const std::string& description)
        : std::runtime_error(description), code(errorCode) {}
    ErrorCode code;
};

// Thrown to answer the request with an HTTP status and a CIMError header (DSP0200, 7.3).
class BadRequest : public std::runtime_error {
public:
    BadRequest(int httpStatus, const char* cimError, const std::string& description)
        : std::runtime_error(description), status(httpStatus), error(cimError) {}
    int status;
    const char* error;
};

} // namespace cimxml
