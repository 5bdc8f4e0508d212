// SPDX-License-Identifier: Apache-2.0
#include "host/SecretCommands.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNote.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "host/PPDCommand.h"
#include "host/SettingFiles.h"
#include "platform/Wiping.h"

namespace {

// A text that may have come with its comment's head and line end, or cut into lines.
Outcome ReadArgument(std::string const& argument, WipedText& text) {
    WipedText whole(argument);
    if (argument == "-") {
        if (Outcome outcome = SettingFiles::ReadText("-", "standard input", whole); !outcome.Ok()) {
            return outcome;
        }
    }
    std::string_view rest = whole.View();
    if (rest.find('\0') != std::string_view::npos) {
        return Outcome::Failed("standard input has a zero byte, it is no text");
    }
    if (rest.starts_with("%%")) {
        rest.remove_prefix(std::min(rest.find(' '), rest.size()));
    }
    text.Clear();
    for (char const& byte : rest) {
        if (std::string_view(" \t\r\n").find(byte) == std::string_view::npos) {
            text.Append(std::string_view(&byte, 1));
        }
    }
    return Outcome::Done();
}

std::string InHex(std::array<unsigned char, kGUIDSize> const& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex;
    for (unsigned char const byte : bytes) {
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 15];
    }
    return hex;
}

}  // namespace

Outcome UnpackCommand::Run() {
    WipedText text;
    if (Outcome outcome = ReadArgument(mOptions.text, text); !outcome.Ok()) {
        return outcome;
    }
    char* user = nullptr;
    char* password = nullptr;
    char* domain = nullptr;
    UAL_DomainType type{};
    std::array<unsigned char, kGUIDSize> identifier{};
    if (UAL_UnpackAndDecrypt(text.CStr(), &user, &password, &domain, &type, identifier.data()) !=
        0) {
        return Outcome::Failed("this is no user authentication record of this build's keys");
    }
    Json record;
    record["user"] = JsonText::Bytes(user);
    record["password"] = JsonText::Bytes(password);
    record["domain"] = JsonText::Bytes(domain);
    record["domainType"] = static_cast<long>(type);
    record["identifier"] = InHex(identifier);
    for (char** const part : {&user, &password, &domain}) {
        AUTH_freeBuffer(part);
    }
    mOut << record.dump() << '\n';
    return Outcome::Done();
}

Outcome DecryptNoteCommand::Run() {
    if (Outcome outcome = HostFiles::CheckReadable(mOptions.ppd); !outcome.Ok()) {
        return outcome;
    }
    WipedText digits;
    if (Outcome outcome = ReadArgument(mOptions.digits, digits); !outcome.Ok()) {
        return outcome;
    }
    ParsedPPD const ppd(mOptions.ppd, kParseAll, {});
    if (!ppd->IsValidPPD()) {
        return Outcome::NotOurs(mOptions.ppd + " isn't a PPD of the extension, or is broken");
    }
    NoteCipherChoice const choice = CipherChoiceOf(&ppd.Get(), mOptions.isAES);
    char text[kNoteCipherSize];
    WipeAtEnd const wiped(text);
    if (digits.View().find_first_not_of("0123456789ABCDEF") != std::string_view::npos) {
        return Outcome::Failed("a note's cipher has no other characters than 0 to 9 and A to F");
    }
    if (!DecipherNote(digits.View(), choice, text)) {
        return Outcome::Failed("this is no whole note enciphered with this build's keys as " +
                               mOptions.ppd + " has it" +
                               (mOptions.isAES ? "" : "; is it one with AESEncrypt (--aes)?"));
    }
    mOut << text;
    return Outcome::Done();
}
