// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/DataStream.h"

DataStream::~DataStream() = default;

void DataStream::expect(unsigned long) {}

bool DataStream::dataExists() {
    return mDataSize != 0;
}

bool DataStream::valid() {
    return mValid;
}

unsigned long DataStream::dataSize() {
    return mDataSize;
}
