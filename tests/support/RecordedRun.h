// What tests of a run inside the test program share: every provider, a recording window, and a clean state afterwards.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>

#include "ado/SessionLease.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/RunTally.h"
#include "app/shared/SessionLog.h"
#include "providers/ProviderList.h"
#include "repository/model/SessionModel.h"
#include "tests/support/TempFolder.h"
#include "ui/RecordingForm.h"

namespace varnel {

class RecordedRun : public testing::Test {
protected:
    RecordedRun() {
        SetProviders(AllProviders());
        auto form = std::make_unique<RecordingForm>();
        form_ = form.get();
        UseProgressForm(std::move(form));
        ShowOutput = true;
        Tally = {};
    }
    ~RecordedRun() override {
        CloseLog();
        ResetSessionModel();
        ResetSharedFlags();
        UseProgressForm(nullptr);
        CloseIdleSessions();
    }
    /// The text with every moment as NOW and every span as SPAN.
    static std::string Timeless(const std::string& text) {
        static const std::regex moment("[0-9]+/[0-9]+/[0-9]{4}( [0-9]+:[0-9]+:[0-9]+ [AP]M)?");
        static const std::regex span("[0-9]+ Hrs [0-9]+ Min [0-9]+ Sec");
        return std::regex_replace(std::regex_replace(text, moment, "NOW"), span, "SPAN");
    }

    TempFolder folder_;
    RecordingForm* form_ = nullptr;
    std::string log_, window_;
};

}  // namespace varnel
