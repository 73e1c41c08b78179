#pragma once

#include "bytereader.h"

/// The parsers of the project that need neither window nor file, each with an oracle: a second
/// implementation, or the way back. What differs ends the program with the input on standard error.
namespace Parsers {

struct Parser
{
    const char *name;
    void (*run)(ByteReader &bytes);
};

// Texts: tests/fuzz/textparsers.cpp.
void dateTime(ByteReader &bytes);
void leadingNumber(ByteReader &bytes);
void columnKey(ByteReader &bytes);
void hours(ByteReader &bytes);
void dayArgument(ByteReader &bytes);

// Messages: tests/fuzz/messageparsers.cpp.
void messageLine(ByteReader &bytes);
void remoteRecord(ByteReader &bytes);
void carsList(ByteReader &bytes);
void messageLog(ByteReader &bytes);
void draggedItems(ByteReader &bytes);

// Requests of the page: tests/fuzz/requestparsers.cpp.
void requestTime(ByteReader &bytes);
void requestNumber(ByteReader &bytes);
void requestBody(ByteReader &bytes);

// Addresses of the page's server: tests/fuzz/addressparsers.cpp.
void endpoint(ByteReader &bytes);
void clientAddress(ByteReader &bytes);

/// Ends the program unless the condition holds.
void require(bool condition, const char *expected, const QByteArray &input);

} // namespace Parsers
