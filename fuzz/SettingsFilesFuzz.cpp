// ClipquillSetup.txt and the sibling product's setup file, as the studio loads them at start-up
// and rewrites its own when a folder changes. What was loaded must load back the same after a
// save.
#include "FuzzSupport.h"

#include "studio/DirectorySettings.h"

using namespace cq;

namespace {

bool sameFolders(const DirectorySettings& a, const DirectorySettings& b) {
    return a.gstrMyVideoDirectory == b.gstrMyVideoDirectory &&
           a.gstrMyMusicDirectory == b.gstrMyMusicDirectory &&
           a.gstrMyPicturesDirectory == b.gstrMyPicturesDirectory &&
           a.gstrMyStdPicturesDirectory1 == b.gstrMyStdPicturesDirectory1 &&
           a.gstrMyStdPicturesDirectory2 == b.gstrMyStdPicturesDirectory2 &&
           a.gstrRenderToFileSpec == b.gstrRenderToFileSpec;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const fuzz::ScratchFile file("ClipquillSetup.txt");
    if (!file.write(fuzz::InputBytes(data, size)))
        fuzz::Broken("the scratch file cannot be written");
    DirectorySettings sibling;
    sibling.LoadDirectoriesFromHarrowfinSetupFile(file.path());
    DirectorySettings own;
    own.LoadDirectoriesFromClipquillSetupFile(file.path());
    if (!own.SaveDirectoriesToFile(file.path()))
        fuzz::Broken("the settings cannot be saved to the scratch file");
    DirectorySettings reloaded;
    reloaded.LoadDirectoriesFromClipquillSetupFile(file.path());
    fuzz::Check(sameFolders(own, reloaded), "saved settings load back different");
    return 0;
}
