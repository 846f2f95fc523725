// SPDX-License-Identifier: MIT

#include "mfcurves/profiles/mfProfileManager.h"

#include <limits>

#include "mfcurves/interfaces/IMotionServices.h"
#include "mfcurves/interfaces/hostAnswers.h"
#include "mfcurves/motion/mfTextConverter.h"
#include "mfcurves/platform/files.h"
#include "mfcurves/platform/locale.h"
#include "mfcurves/platform/numbers.h"
#include "mfcurves/profiles/designLibrary.h"
#include "mfcurves/profiles/mfProfile.h"
#include "mfcurves/profiles/mfSegmentTypeParser.h"

#ifndef MFCURVES_USE_NEW_PROFILE_MANAGER
#define MFCURVES_USE_NEW_PROFILE_MANAGER 1
#endif

namespace {

constexpr const wchar_t* kDefaultProfileName = L"Cubic";
constexpr const wchar_t* kDefaultSuffix = L" (Default)";
constexpr const wchar_t* kUserSuffix = L" (User)";
constexpr const wchar_t* kAssemblyWord = L"Assembly";
constexpr const wchar_t* kProfileFileName = L"SegmentTypes.txt";
constexpr const wchar_t* kDigits = L"0123456789";

constexpr int kStored = 0;
constexpr int kExistsAlready = 1;
constexpr int kNoKey = -1;

CString profileFileIn(const CString& folder)
{
    return mf::profiles::fileInFolder(folder, kProfileFileName);
}

std::wstring folded(const std::string& text)
{
    std::wstring result(mfTextConverter_c().toCString(text).View());
    for (wchar_t& c : result)
        c = mf::platform::foldCase(c);
    return result;
}

// Two profiles are the same when their names, without a bracketed tail, and their
// definition texts are equal without regard to case. The fields that were parsed
// have no say.
std::wstring contentOf(const mfProfile_c& record)
{
    const std::string name = mfSegmentTypeParser_c().baseProfileName(record.name);
    return folded(name) + L'\0' + folded(record.definitionText);
}

// Records on their way from the reader into a group. Those that have not arrived
// are deleted.
struct ReadRecords {
    std::vector<mfProfile_c*> list;

    ReadRecords() = default;
    ReadRecords(const ReadRecords&) = delete;
    ReadRecords& operator=(const ReadRecords&) = delete;
    ~ReadRecords()
    {
        for (mfProfile_c* record : list)
            delete record;
    }
};

CString leadingDigits(const CString& text)
{
    const std::size_t length = text.View().find_first_not_of(kDigits);
    return length == std::wstring_view::npos ? text : text.Left(static_cast<int>(length));
}

}  // namespace

mfProfileManager_c::mfProfileManager_c() = default;

mfProfileManager_c::~mfProfileManager_c()
{
    for (const auto& [key, record] : userProfiles_)
        delete record;
    for (const auto& [key, record] : assemblyProfiles_)
        delete record;
}

bool mfProfileManager_c::s_UseNewProfileManager()
{
    return MFCURVES_USE_NEW_PROFILE_MANAGER;
}

bool mfProfileManager_c::rebuildUserProfileMap()
{
    displaceUserProfiles();
    userDisplayNames_.clear();
    // A file that fails does not fall back on the built-in table.
    return collectSearchPaths() ? loadProfilesFromFile() : loadBuiltInProfiles();
}

// Rows point to their records and are not told of a rebuild, so a record outlives
// its place in the group.
void mfProfileManager_c::displaceUserProfiles()
{
    displacedProfiles_.reserve(displacedProfiles_.size() + userProfiles_.size());
    std::erase_if(heldByContent_, [this](const auto& entry) {
        const auto user = userProfiles_.find(entry.second.key);
        return user != userProfiles_.end() && user->second == entry.second.record;
    });
    for (const auto& [key, record] : userProfiles_)
        displacedProfiles_.emplace_back(record);
    userProfiles_.clear();
}

// Entries of an earlier call stay in the list. That does no harm, since the first
// readable file counts, but keeps the answer true when none is readable any more.
bool mfProfileManager_c::collectSearchPaths()
{
    IMotionServices_c* services = mf::interfaces::motionServices();
    if (!services)
        return false;
    const CString paths = services->getDesignLibraryPaths();
    if (paths.IsEmpty())
        return false;
    for (const CString& folder : mf::profiles::designLibraryFolders(paths))
        if (mf::platform::isReadable(profileFileIn(folder)))
            searchPaths_.push_back(folder);
    return !searchPaths_.empty();
}

bool mfProfileManager_c::loadProfilesFromFile()
{
    for (const CString& directory : searchPaths_) {
        const CString path = profileFileIn(directory);
        if (!mf::platform::isReadable(path))
            continue;
        ReadRecords records;
        if (!mfSegmentTypeParser_c().readProfiles(mfTextConverter_c().toNarrow(path), records.list))
            return false;
        userDisplayNames_.clear();
        return addProfilesToUserMap(records.list);
    }
    return false;
}

// The suffix of the built-in table stays for good: profiles that a later load takes
// from a file are filed under it, too.
bool mfProfileManager_c::loadBuiltInProfiles()
{
    usingDefaultTable_ = true;
    ReadRecords records;
    if (!mfSegmentTypeParser_c().readProfiles("", records.list))
        return false;
    userDisplayNames_.clear();
    return addProfilesToUserMap(records.list);
}

// The outcome of the last record alone decides: a duplicate in the middle does not
// make a load fail, one at its end does.
bool mfProfileManager_c::addProfilesToUserMap(std::vector<mfProfile_c*>& records)
{
    bool result = false;
    for (mfProfile_c*& record : records) {
        mfProfileKey_c key;
        result = addUserProfile(record->name, record, key) == kStored;
        if (!result)
            delete record;
        record = nullptr;
    }
    return result;
}

int mfProfileManager_c::addUserProfile(const std::string& name, mfProfile_c* record, mfProfileKey_c& key)
{
    if (findEqualProfile(record, key))
        return kExistsAlready;
    return storeProfile(userProfiles_, userDisplayNames_, name, CString(), record, key);
}

int mfProfileManager_c::addAssemblyProfile(const std::string& name, const CString& file, mfProfile_c* record,
                                           mfProfileKey_c& key)
{
    if (findEqualProfile(record, key))
        return kExistsAlready;
    return storeProfile(assemblyProfiles_, assemblyDisplayNames_, name, file, record, key);
}

int mfProfileManager_c::addAssemblyProfileFromDocument(const std::string& name, bool useAssemblyWord,
                                                       mfProfile_c* record, mfProfileKey_c& key)
{
    return addAssemblyProfile(name, useAssemblyWord ? CString(kAssemblyWord) : CString(), record, key);
}

bool mfProfileManager_c::findEqualProfile(const mfProfile_c* record, mfProfileKey_c& key)
{
    if (!record)
        return false;
    const auto found = heldByContent_.find(contentOf(*record));
    if (found == heldByContent_.end())
        return false;
    key = found->second.key;
    return true;
}

// All memory is taken before anything is stored, so that a failure leaves both
// groups as they were and the record with the caller.
int mfProfileManager_c::storeProfile(ProfileMap& map, std::vector<CString>& displayNames,
                                     const std::string& name, const CString& file, mfProfile_c* record,
                                     mfProfileKey_c& key)
{
    const int status = buildKey(key, mfTextConverter_c().toCString(name), file, record);
    if (status != kStored)
        return status;
    CString displayName;
    key.keyDisplayName(displayName);
    ProfileMap stored;
    stored.emplace(key, record);
    const auto former = map.find(key);
    // A record that takes a place over stands there under the key that it finds.
    std::map<std::wstring, Held> held;
    held.emplace(contentOf(*record), Held{former != map.end() ? former->first : key, record});
    if (former != map.end())
        displacedProfiles_.reserve(displacedProfiles_.size() + 1);
    displayNames.push_back(displayName);

    if (former != map.end()) {
        forget(former->second);
        displacedProfiles_.emplace_back(former->second);
        former->second = record;
    }
    map.merge(stored);
    heldByContent_.merge(held);
    return kStored;
}

void mfProfileManager_c::forget(const mfProfile_c* record)
{
    std::erase_if(heldByContent_, [record](const auto& entry) { return entry.second.record == record; });
}

// The host's manager makes the key, whichever object was asked to store the
// profile.
int mfProfileManager_c::buildKey(mfProfileKey_c& key, const CString& name, const CString& file,
                                 const mfProfile_c* record)
{
    mfProfileManager_c* manager = mf::interfaces::profileManager();
    if (!manager)
        return kNoKey;
    key.name = name;
    if (file.IsEmpty())
        manager->currentSourceSuffix(key.source);
    else
        key.source = CString(L" (") + CString(mf::platform::fileStem(file.GetString())) + L")";
    return manager->assignIndex(key, record);
}

// The source alone chooses the group that is searched, so it can be another one
// than the group that the profile is stored in.
int mfProfileManager_c::assignIndex(mfProfileKey_c& key, const mfProfile_c* record)
{
    if (!record)
        return kNoKey;
    CString suffix;
    currentSourceSuffix(suffix);
    key.index = nextIndexFor(key, key.source == suffix ? userProfiles_ : assemblyProfiles_);
    return kStored;
}

// One above the highest index in use. Keys of equal name and source stand together
// in the map, the highest index last.
int mfProfileManager_c::nextIndexFor(const mfProfileKey_c& key, const ProfileMap& map)
{
    mfProfileKey_c highest = key;
    highest.index = std::numeric_limits<std::int32_t>::max();
    const auto behind = map.upper_bound(highest);
    if (behind == map.begin())
        return 0;
    const mfProfileKey_c& last = std::prev(behind)->first;
    return last.sameNameAndSource(key) ? last.index + 1 : 0;
}

mfProfile_c* mfProfileManager_c::findProfile(const mfProfileKey_c& key)
{
    if (const auto found = assemblyProfiles_.find(key); found != assemblyProfiles_.end())
        return found->second;
    const auto found = userProfiles_.find(key);
    return found != userProfiles_.end() ? found->second : nullptr;
}

void mfProfileManager_c::defaultDisplayName(CString& out)
{
    CString suffix;
    currentSourceSuffix(suffix);
    out = kDefaultProfileName + suffix;
}

void mfProfileManager_c::currentSourceSuffix(CString& out)
{
    out = usingDefaultTable_ ? kDefaultSuffix : kUserSuffix;
}

void mfProfileManager_c::rememberDocumentName(const std::string& name, const mfProfileKey_c& key)
{
    documentNameToKey_[name] = key;
}

void mfProfileManager_c::lookupDocumentName(const std::string& name, mfProfileKey_c& key)
{
    const auto found = documentNameToKey_.find(name);
    key = found != documentNameToKey_.end() ? found->second : mfProfileKey_c();
}

bool mfProfileManager_c::getAllProfileNames(std::vector<CString>& names)
{
    names.clear();
    collectNames(userProfiles_, userDisplayNames_, names);
    collectNames(assemblyProfiles_, assemblyDisplayNames_, names);
    return true;
}

void mfProfileManager_c::collectNames(const ProfileMap& map, const std::vector<CString>& list,
                                      std::vector<CString>& names)
{
    // Each record brought its name; one that took a place over brought a name too many.
    if (map.size() == list.size())
        names.insert(names.end(), list.begin(), list.end());
}

// A current suffix stands for itself, and any other bracketed text is taken for a
// source. The mark <n> of an index is no digit, so that a name which bears one
// means the first profile of that name.
mfProfileKey_c mfProfileManager_c::getProfileKeyFromDisplayName(const CString& displayName)
{
    CString suffix;
    currentSourceSuffix(suffix);
    mfProfileKey_c key;
    if (const int at = displayName.Find(suffix); at >= 0) {
        const CString tail = displayName.Mid(at + suffix.GetLength());
        if (!leadingDigits(tail).IsEmpty())
            return key;
        key.name = displayName.Left(at);
        key.source = suffix;
        return key;
    }
    const int open = displayName.Find(L" (");
    if (open < 1) {
        key.name = displayName;
        key.source = suffix;
        return key;
    }
    const int close = displayName.Find(L')', open);
    if (close < 1)
        return key;
    key.name = displayName.Left(open);
    key.source = displayName.Mid(open, close + 1 - open);
    const CString digits = leadingDigits(displayName.Mid(close + 1));
    key.index = mf::platform::readInteger(mfTextConverter_c().toNarrow(digits));
    return key;
}
