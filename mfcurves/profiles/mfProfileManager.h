// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "mfcurves/interfaces/CString.h"
#include "mfcurves/platform/mfExport.h"
#include "mfcurves/profiles/mfProfileKey.h"

class mfProfile_c;

/// The registry of all profiles that the segment curves of a host can use.
///
/// It keeps two groups. User profiles come from the first readable file
/// "SegmentTypes.txt" in the host's design library directories or, when the host
/// names no usable directory, from the built-in table. Assembly profiles come
/// from curve documents.
///
/// The host makes one manager, hands it out through its context and ends it
/// after the last curve.
///
/// Errors: silent; see each operation.
/// Threads: one at a time, and no row may be parsed meanwhile in another.
/// Ownership: the records stored are owned here and live as long as the manager,
/// also those that a rebuild or a later record replaces. A row that looked its
/// profile up keeps the record it found until its key is set again.
/// Copying: none.
class MFCURVES_API mfProfileManager_c {
public:
    mfProfileManager_c();  ///< no profiles
    ~mfProfileManager_c();
    mfProfileManager_c(const mfProfileManager_c&) = delete;
    mfProfileManager_c& operator=(const mfProfileManager_c&) = delete;

    /// True when profiles come from this manager, false when each curve carries
    /// lists of its own from the older reader. Fixed when the library is built.
    static bool s_UseNewProfileManager();

    /// Reads the user group anew: from the first readable file of the design
    /// library folders, or from the built-in table when none was ever found
    /// or the host names no folders.
    ///
    /// Folders in which a file was found are remembered, in that order, and looked at
    /// before those that the host names later. So a host that changes its design library
    /// still gets the former one while its file is there. It takes
    /// a new manager instead, in mf::host a new Context, and makes its curves anew.
    ///
    /// Rows keep the records that they have: set the key of a row again and parse it, to
    /// give it the law of that name in the new library. mf::laws says what a folder
    /// holds and why a file does not parse.
    ///
    /// False, with an empty user group, when the file does not parse; nothing else is
    /// tried then. False too when the last definition is a duplicate or gets no
    /// key, though the others are stored.
    bool rebuildUserProfileMap();

    /// Replaces `names` by the display names of the user group and then of the
    /// assembly group, each in order of arrival. A group whose list does not
    /// match its records is left out. Always true.
    bool getAllProfileNames(std::vector<CString>& names);

    /// Takes a display name apart; whether a profile of that key exists is another
    /// question. The empty key for a current suffix followed by a digit and for
    /// an opening bracket that is never closed. The mark `<n>` of an index is
    /// not read back.
    mfProfileKey_c getProfileKeyFromDisplayName(const CString& displayName);

    /// The record of that key, null if there is none; an assembly profile hides a
    /// user profile of equal key. Lent for the life of the manager.
    mfProfile_c* findProfile(const mfProfileKey_c& key);

    /// The display name of the default profile: "Cubic" and the current suffix.
    void defaultDisplayName(CString& out);

    /// " (Default)" once the built-in table has been loaded, " (User)" before.
    void currentSourceSuffix(CString& out);

    /// Stores a profile of a curve document under the stem of `file`, or the
    /// current suffix when `file` is empty.
    ///
    /// 0: the record is owned here from now on, and `key` is its key. 1: an equal
    /// record exists in either group, `key` is that one's, and the new record
    /// stays the caller's. -1: no key could be made, and the record stays the
    /// caller's.
    int addAssemblyProfile(const std::string& name, const CString& file, mfProfile_c* record,
                           mfProfileKey_c& key);

    /// The same for a document without a file name: under the word "Assembly", or
    /// with the current suffix.
    int addAssemblyProfileFromDocument(const std::string& name, bool useAssemblyWord, mfProfile_c* record,
                                       mfProfileKey_c& key);

    /// Notes which key a profile name of a curve document stands for.
    void rememberDocumentName(const std::string& name, const mfProfileKey_c& key);

    /// True once a profile name of a curve document was noted.
    bool hasDocumentNames() const { return !documentNameToKey_.empty(); }

    /// The key noted for a profile name of a curve document, the empty key if
    /// there is none.
    void lookupDocumentName(const std::string& name, mfProfileKey_c& key);

private:
    struct KeyOrder {
        bool operator()(const mfProfileKey_c& a, const mfProfileKey_c& b) const
        {
            return mfProfileKey_c::keyLess(a, b);
        }
    };
    using ProfileMap = std::map<mfProfileKey_c, mfProfile_c*, KeyOrder>;

    MFCURVES_LOCAL void displaceUserProfiles();
    MFCURVES_LOCAL bool collectSearchPaths();
    MFCURVES_LOCAL bool loadBuiltInProfiles();
    MFCURVES_LOCAL bool loadProfilesFromFile();
    MFCURVES_LOCAL bool addProfilesToUserMap(std::vector<mfProfile_c*>& records);
    MFCURVES_LOCAL int addUserProfile(const std::string& name, mfProfile_c* record, mfProfileKey_c& key);
    MFCURVES_LOCAL int storeProfile(ProfileMap& map, std::vector<CString>& displayNames,
                                    const std::string& name, const CString& file, mfProfile_c* record,
                                    mfProfileKey_c& key);
    MFCURVES_LOCAL void forget(const mfProfile_c* record);
    MFCURVES_LOCAL int buildKey(mfProfileKey_c& key, const CString& name, const CString& file,
                                const mfProfile_c* record);
    MFCURVES_LOCAL int assignIndex(mfProfileKey_c& key, const mfProfile_c* record);
    MFCURVES_LOCAL int nextIndexFor(const mfProfileKey_c& key, const ProfileMap& map);
    MFCURVES_LOCAL bool findEqualProfile(const mfProfile_c* record, mfProfileKey_c& key);
    MFCURVES_LOCAL void collectNames(const ProfileMap& map, const std::vector<CString>& list,
                                     std::vector<CString>& names);

    ProfileMap userProfiles_;      // records owned
    ProfileMap assemblyProfiles_;  // records owned
    std::map<std::string, mfProfileKey_c> documentNameToKey_;
    std::vector<CString> userDisplayNames_;      // in order of arrival
    std::vector<CString> assemblyDisplayNames_;  // in order of arrival
    std::vector<CString> searchPaths_;           // only ever grows
    bool usingDefaultTable_ = false;
    struct Held {
        mfProfileKey_c key;
        const mfProfile_c* record;
    };
    // Each record by what makes two records the same profile; both groups together
    // hold none twice.
    std::map<std::wstring, Held> heldByContent_;
    // Records that a rebuild or a later record of the same key replaced. Rows may
    // still point to them.
    std::vector<std::unique_ptr<mfProfile_c>> displacedProfiles_;
};
