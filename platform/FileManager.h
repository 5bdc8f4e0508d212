// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

// Files by a volume, a directory number and a name. A directory number stands for a directory's
// path as long as the process lives, and for nothing in another process. A name of more than 63
// bytes gets a shortened one in its FSSpec, which leads to the file all the same in this process.

#pragma pack(push, 2)
struct FSSpec {
    std::int16_t vRefNum;
    std::int32_t parID;
    std::uint8_t name[64];  // length byte and at most 63 bytes
};
#pragma pack(pop)
static_assert(sizeof(FSSpec) == 70, "an FSSpec is stored in 70 bytes");

constexpr char fsRdPerm = 1;
constexpr char fsWrPerm = 2;
constexpr char fsRdWrPerm = 3;

// The path of the file, terminated. bdNamErr for an FSSpec that names no directory known here,
// paramErr when it doesn't fit.
OSErr FSSpecGetPath(FSSpec const* file, char* path, unsigned long size);
// A file or folder that need not exist: fnfErr then, with `file` filled in all the same;
// dirNFErr, and a zeroed `file`, when its folder doesn't.
OSErr FSMakeFSSpecFromURL(CFURLRef url, FSSpec* file);
// A name, length byte first, in a directory known by number; fnfErr as above.
OSErr FSMakeFSSpec(std::int16_t volume, std::int32_t directory, std::uint8_t const* name,
                   FSSpec* file);
// The file's own name, not shortened, terminated.
OSErr FSSpecGetName(FSSpec const* file, char* name, unsigned long size);

OSErr FSpCreate(FSSpec const* file, OSType creator, OSType fileType);  // dupFNErr if it exists
OSErr FSpOpenDF(FSSpec const* file, char permission, std::int16_t* reference);
OSErr FSClose(std::int16_t reference);
// `count` goes in as the wish and comes out as what was read; eofErr with what was there when the
// file ends first.
OSErr FSRead(std::int16_t reference, long* count, void* buffer);
OSErr FSWrite(std::int16_t reference, long* count, void const* buffer);
OSErr GetEOF(std::int16_t reference, long* size);

// The location of what a URL names, for callers that only want to know that it is there.
struct FSRef {
    FSSpec file;
};
bool CFURLGetFSRef(CFURLRef url, FSRef* reference);  // false when there is no such file

// The current resource file of the process, a number that code saves and sets back.
std::int16_t CurResFile();
void UseResFile(std::int16_t reference);
