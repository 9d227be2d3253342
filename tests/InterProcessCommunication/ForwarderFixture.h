// The platform's forwarder with an installed server in its own system root.
// PlatformDouble receives its events.
#pragma once

#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "settings/MultiLanguageSupport.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"

namespace dovrel::test {

class ForwarderFixture : public ChannelFixture {
  protected:
    ForwarderFixture() {
        install();
        platform.processes = {"Merrowd"};
    }

    void loadTexts() {
        root.write(
            "Library/Application "
            "Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/MultiLanguageTexts.mls",
            "//LANGUAGE\nSTR:English\n"
            "//DLL_MSG_MERROWD_IS_MISSING_MACOSX\nSTR:It is missing.\n"
            "//DLL_MSG_MERROWD_IS_CORRUPT_MACOSX\nSTR:It is corrupt.\n");
        MultiLanguageSupport::initialize(kLanguageEnglish);
    }

    MacOSXTransferObjForwarder forwarder;
};

}  // namespace dovrel::test
