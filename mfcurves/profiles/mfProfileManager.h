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
/// "SegmentTypes.txt" in the folders of the host's design library or, when the host
/// names no usable folder, from the built-in table. Assembly profiles come from curve
/// documents.
///
/// The host makes one manager, returns it from its context and destroys it after the
/// last curve.
///
/// Errors: silent; see each operation.
/// Threads: one at a time; no row may be parsed in another thread meanwhile.
/// Ownership: the manager owns the stored records, which live as long as it does, even
/// after a rebuild or a later record replaces them. A row keeps the record that it
/// found until its key is set again.
/// Copying: not copyable.
class MFCURVES_API mfProfileManager_c {
public:
    mfProfileManager_c();  ///< no profiles
    ~mfProfileManager_c();
    mfProfileManager_c(const mfProfileManager_c&) = delete;
    mfProfileManager_c& operator=(const mfProfileManager_c&) = delete;

    /// True when profiles come from this manager, false when each curve has its own
    /// lists from the older reader. Fixed when the library is built.
    static bool s_UseNewProfileManager();

    /// Reads the user group again: from the first readable file in the folders of the
    /// design library, or from the built-in table when no file was ever found or the
    /// host names no folders.
    ///
    /// Folders in which a file was found are remembered, in that order, and searched
    /// before those that the host names later. So after a change of the design library
    /// the former one is still used while its file exists. To use another library, make
    /// a new manager (in mf::host a new Context) and make the curves again.
    ///
    /// Rows keep the records that they have. To give a row the law of that name in the
    /// new library, set its key again and parse it. mf::laws reports what a folder
    /// contains and why a file does not parse.
    ///
    /// False, with an empty user group, when the file does not parse; no other file or
    /// table is tried. Also false when the last definition is a duplicate or gets no
    /// key, although the others are stored.
    bool rebuildUserProfileMap();

    /// Replaces `names` by the display names of the user group, then of the assembly
    /// group, each in order of arrival. A group with more names than records, because
    /// one record replaced another, is left out. Always true.
    bool getAllProfileNames(std::vector<CString>& names);

    /// Parses a display name, whether or not a profile of that key exists. Returns the
    /// empty key when a digit follows the current suffix, and when an opening bracket
    /// is not closed. The mark `<n>` of an index is not read back.
    mfProfileKey_c getProfileKeyFromDisplayName(const CString& displayName);

    /// The record of that key, null if not found; an assembly profile hides a user
    /// profile of equal key. The manager keeps ownership; valid as long as it lives.
    mfProfile_c* findProfile(const mfProfileKey_c& key);

    /// The display name of the default profile: "Cubic" and the current suffix.
    void defaultDisplayName(CString& out);

    /// " (Default)" once the built-in table has been loaded, " (User)" before.
    void currentSourceSuffix(CString& out);

    /// Stores a profile of a curve document under the stem of `file`, or the current
    /// suffix when `file` is empty. Sets `key` to the key of the profile.
    ///
    /// Returns 0 when the manager has taken ownership of the record; 1 when an equal
    /// record exists in either group, to which `key` then belongs; -1 when no key could
    /// be made. After 1 and -1 the caller still owns the record.
    int addAssemblyProfile(const std::string& name, const CString& file, mfProfile_c* record,
                           mfProfileKey_c& key);

    /// The same for a document without a file name: under the word "Assembly", or
    /// with the current suffix.
    int addAssemblyProfileFromDocument(const std::string& name, bool useAssemblyWord, mfProfile_c* record,
                                       mfProfileKey_c& key);

    /// Stores the key that a profile name of a curve document refers to.
    void rememberDocumentName(const std::string& name, const mfProfileKey_c& key);

    /// True once a profile name of a curve document was stored.
    bool hasDocumentNames() const { return !documentNameToKey_.empty(); }

    /// Sets `key` to the key stored for a profile name of a curve document, or to the
    /// empty key.
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
    // Each record by its name and text, which decide whether two records are the same
    // profile. No profile is in the two groups twice.
    std::map<std::wstring, Held> heldByContent_;
    // Records that a rebuild or a later record of the same key replaced. Rows may
    // still point to them.
    std::vector<std::unique_ptr<mfProfile_c>> displacedProfiles_;
};
