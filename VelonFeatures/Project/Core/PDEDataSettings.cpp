// SPDX-License-Identifier: Apache-2.0
// What the session data keeps in the print settings beside the PPD's choices.
#include <algorithm>
#include <span>
#include <string>

#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "platform/CFRef.h"

namespace {

constexpr OSStatus kNoTicketOrClient = -1;

CFRef<CFStringRef> NumberedKey(char const* stem, std::size_t number) {
    return CFRef<CFStringRef>(CFStringCreateWithCString(
        nullptr, (stem + std::to_string(number)).c_str(), kCFStringEncodingASCII));
}

// Writes entries for one client. An entry whose identifier can't be made is left out.
class SettingsWriter {
  public:
    SettingsWriter(PrintSettingsTicket& ticket, CFStringRef client)
        : mTicket(ticket), mClient(client) {}

    OSStatus Status() const { return mStatus; }  // of the last entry
    void Number(char const* key, std::int32_t number) { Put(TicketKey(key), long{number}); }
    // A pair that isn't set, or has no room where it is stored, is left out whole, and so is what
    // an earlier dialog had in its place.
    void Pairs(char const* keyStem, char const* valueStem, std::span<OptionPair const> pairs) {
        for (std::size_t i = 0; i < pairs.size(); ++i) {
            CFRef<CFStringRef> const key(pairs[i].CopyKey());
            CFRef<CFStringRef> const value(pairs[i].CopyValue());
            if (key && value) {
                Put(NumberedKey(keyStem, i), key.Get());
                Put(NumberedKey(valueStem, i), value.Get());
            } else {
                mTicket.Release(NumberedKey(keyStem, i));
                mTicket.Release(NumberedKey(valueStem, i));
            }
        }
    }

  private:
    template <typename Value>
    void Put(CFStringRef key, Value value) {
        CFRef<CFMutableStringRef> const identifier(CreateClientIdentifier(key));
        if (key != nullptr && identifier) {
            mStatus = mTicket.Set(mClient, key, value, false);
        }
    }

    PrintSettingsTicket& mTicket;
    CFStringRef mClient;
    OSStatus mStatus = noErr;
};

void ReadPairs(PrintSettingsTicket& ticket, char const* keyStem, char const* valueStem,
               std::span<OptionPair> pairs) {
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        CFStringRef key = nullptr;
        CFStringRef value = nullptr;
        ticket.Get(NumberedKey(keyStem, i), key);
        ticket.Get(NumberedKey(valueStem, i), value);
        pairs[i].Take(key, value);
    }
}

}  // namespace

OSStatus PDEData::SaveNonPSSettings(PrintSettingsTicket* ticket, CFStringRef client) const {
    if (ticket == nullptr || !ticket->IsValid() || client == nullptr) {
        return kNoTicketOrClient;
    }
    SettingsWriter settings(*ticket, client);
    settings.Number(kSelectedWatermarkKey, mWatermarks.SelectedIndex());
    if (ZUBWatermark const* const selected = mWatermarks.Selected(); selected != nullptr) {
        settings.Number(kFirstPageOnlyKey, selected->FirstPageOnly() ? 1 : 0);
    }
    settings.Number(kPCCountKey, kPCPairs);
    settings.Pairs(kPCKey, kPCValue, mPCPairs);
    settings.Number(kStoredCountKey, mStoredPairCount);
    settings.Pairs(kStoredKey, kStoredValue,
                   std::span(mStoredPairs).first(static_cast<std::size_t>(mStoredPairCount)));
    return settings.Status();
}

OSStatus PDEData::RestoreNonPSSettings(PrintSettingsTicket* ticket) {
    if (ticket == nullptr || !ticket->IsValid()) {
        return kNoTicketOrClient;
    }
    RestoreWatermarkSelection(*ticket);
    ReadPairs(*ticket, kPCKey, kPCValue, mPCPairs);
    long count = 0;
    ticket->GetInt(TicketKey(kStoredCountKey), count);
    SetStoredPairCount(static_cast<std::int32_t>(count));
    ReadPairs(*ticket, kStoredKey, kStoredValue,
              std::span(mStoredPairs).first(static_cast<std::size_t>(mStoredPairCount)));
    return noErr;
}
