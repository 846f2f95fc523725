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
// definition texts are equal ignoring case. The parsed fields are not compared.
std::wstring contentOf(const mfProfile_c& record)
{
    const std::string name = mfSegmentTypeParser_c().baseProfileName(record.name);
    return folded(name) + L'\0' + folded(record.definitionText);
}

// Records that the reader made and that are not in a group yet. The destructor deletes
// those that remain.
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

// Rows point to their records and do not notice a rebuild, so records that leave the
// group are kept.
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

// Entries of an earlier call stay in the list. The first readable file is used, so
// they only keep the result true when no file is readable any more.
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

// The suffix of the built-in table is never reset: profiles that are later loaded from
// a file get it, too.
bool mfProfileManager_c::loadBuiltInProfiles()
{
    usingDefaultTable_ = true;
    ReadRecords records;
    if (!mfSegmentTypeParser_c().readProfiles("", records.list))
        return false;
    userDisplayNames_.clear();
    return addProfilesToUserMap(records.list);
}

// Only the last record decides the result: a duplicate in the middle does not make a
// load fail, one at the end does.
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

// Allocates all memory before it stores anything, so that a failure leaves both groups
// unchanged and the record with the caller.
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
    // A record that replaces another keeps the key object of the map, which may differ
    // in case.
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

// The key comes from the host's manager, even if another manager stores the profile.
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

// The source decides which group is searched for the highest index. The profile may be
// stored in the other group.
int mfProfileManager_c::assignIndex(mfProfileKey_c& key, const mfProfile_c* record)
{
    if (!record)
        return kNoKey;
    CString suffix;
    currentSourceSuffix(suffix);
    key.index = nextIndexFor(key, key.source == suffix ? userProfiles_ : assemblyProfiles_);
    return kStored;
}

// One above the highest index in use. Keys of equal name and source are adjacent in the
// map, the highest index last.
int mfProfileManager_c::nextIndexFor(const mfProfileKey_c& key, const ProfileMap& map)
{
    mfProfileKey_c highest = key;
    highest.index = std::numeric_limits<std::int32_t>::max();
    const auto next = map.upper_bound(highest);
    if (next == map.begin())
        return 0;
    const mfProfileKey_c& last = std::prev(next)->first;
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
    // Each record added its name; one that replaced another added one name too many.
    if (map.size() == list.size())
        names.insert(names.end(), list.begin(), list.end());
}

// The source is the current suffix if the name contains it, otherwise the first text in
// brackets. The mark <n> of an index does not start with a digit, so a name with such a
// mark means the first profile of that name.
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
