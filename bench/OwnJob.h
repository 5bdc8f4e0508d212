// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "platform/PrintManager.h"

class ZUBPPD;

// A print session in which a PPD's choices are committed, but for the file that is written then.
class OwnJob {
  public:
    // `ppd` must outlive this object. Exits the program with a message without a session.
    OwnJob(ZUBPPD& ppd, std::string const& path);
    OwnJob(OwnJob const&) = delete;
    OwnJob& operator=(OwnJob const&) = delete;
    ~OwnJob();

    long Commit();  // the number of pairs

  private:
    PMPrintSession mSession = nullptr;  // owned, as the ticket
    PMTicketRef mSettings = 0;
    std::unique_ptr<PDEData> mData;
};
