// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/project/Project.h"

#include "cli/SettingValues.h"
#include "cli/project/JsonText.h"
#include "cli/project/ProjectPlaces.h"
#include "cli/project/Suggestion.h"
#include "files/PathString.h"
#include "settings/SettingsKeys.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using Type = JsonNode::Type;

/// Settings that decide which files there are, and where outputs go, cannot differ between them.
constexpr std::array overridable{
    suffixKeyString,
    suffixSwitcherKeyString,
    lineBreakKeyString,
    lineBreakSwitcherKeyString,
    nomungeSwitcherKeyString,
    preserveSemiSwitcherKeyString,
    disableOptimizationsSwitcherKeyString,
    selectedEncodingKeyString,
    gzipCheckerKeyString,
    keepXMLSpaceCheckerKeyString,
    compressorsKeyString,
    keepCommentsCheckerKeyString,
    sourceMapCheckerKeyString,
    brotliCheckerKeyString,
};

/// Reads the nodes of a project file. Stops at the first error.
class ProjectReader final {
public:
    ProjectReader(Project &project, const JsonText &text) : m_project(project), m_text(text) {}

    void read();

private:
    /// Reads the value of a key into those of the file or of a profile. False after an error.
    using Read = bool (ProjectReader::*)(const JsonNode &node, ProjectValues &values);
    struct Key {
        QStringView name;
        Read read;
    };

    template <std::optional<bool> ProjectValues::*member>
    bool readSwitch(const JsonNode &node, ProjectValues &values)
    {
        if (node.type != Type::Boolean)
            return fail(node, u"this must be true or false"_s);
        values.*member = node.state;
        return true;
    }

    template <std::optional<ProjectValues::Patterns> ProjectValues::*member>
    bool readPatterns(const JsonNode &node, ProjectValues &values)
    {
        values.*member = ProjectValues::Patterns();
        return addPatterns(node, *(values.*member));
    }

    bool fail(const JsonNode &node, const QString &words);
    bool isTextList(const JsonNode &node);
    bool addPatterns(const JsonNode &node, ProjectValues::Patterns &patterns);
    bool readText(const JsonNode &node, ProjectValues &values);
    bool readPaths(const JsonNode &node, ProjectValues &values);
    bool readOutDir(const JsonNode &node, ProjectValues &values);
    bool readAlso(const JsonNode &node, ProjectValues &values);
    bool readSettingsOfAll(const JsonNode &node, ProjectValues &values)
    {
        return readSettings(node, values.settings);
    }
    bool readSettings(const JsonNode &node, QJsonObject &settings);
    bool readSetting(const JsonNode &key, const JsonNode &value, QJsonObject &settings);
    bool readOverrides(const JsonNode &node, ProjectValues &values);
    bool readOverride(const JsonNode &node, ProjectValues::Override &made);
    bool readOverridden(const JsonNode &node, QJsonObject &settings);
    bool readProfiles(const JsonNode &node, ProjectValues &values);
    bool readKeys(const JsonNode &node, ProjectValues &values, bool isProfile);

    static const std::array<Key, 13> keys;

    Project &m_project;
    const JsonText &m_text;
    QString m_profile; ///< that is being read; empty for none
};

constexpr std::array<ProjectReader::Key, 13> ProjectReader::keys{{
    {u"$schema", &ProjectReader::readText},
    {u"paths", &ProjectReader::readPaths},
    {u"exclude", &ProjectReader::readPatterns<&ProjectValues::exclude>},
    {u"include", &ProjectReader::readPatterns<&ProjectValues::include>},
    {u"gitignore", &ProjectReader::readSwitch<&ProjectValues::gitignore>},
    {u"sort", &ProjectReader::readSwitch<&ProjectValues::sort>},
    {u"also", &ProjectReader::readAlso},
    {u"outDir", &ProjectReader::readOutDir},
    {u"copyRest", &ProjectReader::readSwitch<&ProjectValues::copyRest>},
    {u"keepTimes", &ProjectReader::readSwitch<&ProjectValues::keepTimes>},
    {u"settings", &ProjectReader::readSettingsOfAll},
    {u"overrides", &ProjectReader::readOverrides},
    {u"profiles", &ProjectReader::readProfiles}, // the last one: profiles have none
}};

void ProjectReader::read()
{
    if (!m_text.error().isEmpty())
        m_project.error = u"%1:%2: %3"_s.arg(m_project.file, m_text.place(m_text.errorAt()), m_text.error());
    else
        readKeys(m_text.root(), m_project.values, false);
}

bool ProjectReader::fail(const JsonNode &node, const QString &words)
{
    m_project.error = u"%1:%2: %3"_s.arg(m_project.file, m_text.place(node.at), words);
    return false;
}

bool ProjectReader::readKeys(const JsonNode &node, ProjectValues &values, bool isProfile)
{
    if (node.type != Type::Object)
        return fail(node, isProfile ? u"a profile must be an object, as in {\"sort\": true}"_s
                                    : u"a project file must hold an object, as in {\"paths\": [\".\"]}"_s);
    QStringList names;
    for (const Key &key : keys)
        names.append(key.name.toString());
    if (isProfile)
        names.removeLast();
    for (std::size_t i = 0; i < node.keys.size(); ++i) {
        const qsizetype at = names.indexOf(node.keys[i].text);
        if (at < 0)
            return fail(node.keys[i], u"there is no key \"%1\""_s.arg(node.keys[i].text) +
                                          wayOut(node.keys[i].text, names));
        if (!(this->*keys[static_cast<std::size_t>(at)].read)(node.items[i], values))
            return false;
    }
    return true;
}

bool ProjectReader::isTextList(const JsonNode &node)
{
    if (node.type != Type::List)
        return fail(node, u"this must be a list of texts, as in [\"a\"]"_s);
    const auto wrong = std::ranges::find_if(
        node.items, [](const JsonNode &item) { return item.type != Type::Text || item.text.isEmpty(); });
    return wrong == node.items.end() || fail(*wrong, u"this must be a text that is not empty"_s);
}

bool ProjectReader::addPatterns(const JsonNode &node, ProjectValues::Patterns &patterns)
{
    return isTextList(node) && std::ranges::all_of(node.items, [&](const JsonNode &item) {
               patterns.texts.append(item.text);
               const QString error = patterns.globs.add(item.text.toUtf8());
               return error.isEmpty() || fail(item, u"\"%1\" %2"_s.arg(item.text, error));
           });
}

bool ProjectReader::readText(const JsonNode &node, ProjectValues &)
{
    return node.type == Type::Text || fail(node, u"this must be a text"_s);
}

bool ProjectReader::readPaths(const JsonNode &node, ProjectValues &values)
{
    if (!isTextList(node))
        return false;
    if (node.items.empty())
        return fail(node, u"this must name a folder or a file, as in [\".\"]"_s);
    values.paths = QStringList();
    for (const JsonNode &item : node.items) {
        const PlaceInProject place = placeInProject(m_project.folder, item.text);
        if (!place.error.isEmpty())
            return fail(item, u"\"%1\" %2"_s.arg(item.text, place.error));
        values.paths->append(place.path);
    }
    return true;
}

bool ProjectReader::readOutDir(const JsonNode &node, ProjectValues &values)
{
    if (node.type != Type::Text || node.text.isEmpty())
        return fail(node, u"this must be the name of a folder, as in \"dist\""_s);
    const PlaceInProject place = placeInProject(m_project.folder, node.text);
    values.outDir = place.path;
    return place.error.isEmpty() || fail(node, u"\"%1\" %2"_s.arg(node.text, place.error));
}

bool ProjectReader::readAlso(const JsonNode &node, ProjectValues &values)
{
    if (!isTextList(node))
        return false;
    const QStringList extras = extraKinds();
    values.also = QStringList();
    for (const JsonNode &item : node.items) {
        if (!extras.contains(item.text))
            return fail(item,
                        u"there is no other kind \"%1\"; there are %2"_s.arg(item.text, extras.join(u", ")));
        values.also->append(item.text);
    }
    return true;
}

bool ProjectReader::readSettings(const JsonNode &node, QJsonObject &settings)
{
    if (node.type != Type::Object)
        return fail(node, u"this must be an object, as in {\"%1\": true}"_s.arg(gzipCheckerKeyString));
    for (std::size_t i = 0; i < node.keys.size(); ++i) {
        if (!readSetting(node.keys[i], node.items[i], settings))
            return false;
    }
    return true;
}

/// What a project file cannot say of a setting beyond what the command line can.
QString projectValueError(const SettingKey &setting, const QString &value)
{
    if (setting.key == esbuildPathKeyString)
        return u"%1 names a program, which a project file cannot; use --set"_s.arg(setting.key);
    if (setting.key == keepOriginalsCheckerKeyString)
        return u"%1 is for the window alone; leave it out"_s.arg(setting.key);
    if (setting.key == suffixKeyString && value.contains(u'/'))
        return u"%1 cannot hold a \"/\""_s.arg(setting.key);
    const auto isDigit = [](QChar sign) { return sign >= u'0' && sign <= u'9'; };
    if (setting.key == lineBreakKeyString &&
        (value.isEmpty() || value.size() > 9 || !std::ranges::all_of(value, isDigit)))
        return u"%1 takes a whole number in quotes, as in \"80\""_s.arg(setting.key);
    return settingValueError(setting, value);
}

bool ProjectReader::readSetting(const JsonNode &key, const JsonNode &value, QJsonObject &settings)
{
    QStringList names;
    for (const SettingKey &setting : allSettingKeys)
        names.append(setting.key);
    const SettingKey *const setting = findSettingKey(key.text);
    if (setting == nullptr)
        return fail(key, u"there is no setting \"%1\""_s.arg(key.text) + wayOut(key.text, names));
    const bool isBoolean = setting->type == SettingType::Boolean;
    if (value.type != (isBoolean ? Type::Boolean : Type::Text))
        return fail(value, isBoolean ? u"%1 takes true or false, without quotes"_s.arg(setting->key)
                                     : u"%1 takes a text in quotes"_s.arg(setting->key));
    const QString text = isBoolean ? (value.state ? u"true"_s : u"false"_s) : value.text;
    if (const QString error = projectValueError(*setting, text); !error.isEmpty())
        return fail(value, error);
    settings.insert(setting->key, isBoolean ? QJsonValue(value.state) : QJsonValue(text));
    if (setting->key != selectedFolderKeyString)
        return true;
    const PlaceInProject place = placeInProject(m_project.folder, text);
    settings.insert(setting->key, place.path);
    return place.error.isEmpty() || fail(value, u"\"%1\" %2"_s.arg(text, place.error));
}

bool ProjectReader::readOverrides(const JsonNode &node, ProjectValues &values)
{
    if (node.type != Type::List)
        return fail(node, u"this must be a list, as in [{\"files\": [\"*.js\"], \"settings\": {}}]"_s);
    for (const JsonNode &item : node.items) {
        ProjectValues::Override &made = values.overrides.emplace_back();
        made.name = (m_profile.isEmpty() ? QString() : u"profile %1, "_s.arg(m_profile)) +
                    u"overrides, %1"_s.arg(values.overrides.size());
        if (!readOverride(item, made))
            return false;
    }
    return true;
}

bool ProjectReader::readOverride(const JsonNode &node, ProjectValues::Override &made)
{
    const QStringList names{u"files"_s, u"settings"_s};
    if (node.type != Type::Object)
        return fail(node, u"this must be an object with \"files\" and \"settings\""_s);
    for (std::size_t i = 0; i < node.keys.size(); ++i) {
        const JsonNode &key = node.keys[i];
        if (!names.contains(key.text))
            return fail(key, u"there is no key \"%1\""_s.arg(key.text) + wayOut(key.text, names));
        if (!(key.text == names[0] ? addPatterns(node.items[i], made.files)
                                   : readOverridden(node.items[i], made.settings)))
            return false;
    }
    if (node.keys.size() < 2)
        return fail(node, u"this must have both \"files\" and \"settings\""_s);
    return !made.files.texts.isEmpty() || fail(node, u"\"files\" must hold a pattern, as in [\"vendor/\"]"_s);
}

bool ProjectReader::readOverridden(const JsonNode &node, QJsonObject &settings)
{
    if (!readSettings(node, settings))
        return false;
    const auto common = std::ranges::find_if(node.keys, [](const JsonNode &key) {
        return std::ranges::find(overridable, key.text) == overridable.end();
    });
    return common == node.keys.end() ||
           fail(*common, u"%1 holds for all files; move it to the \"settings\" outside"_s.arg(common->text));
}

bool ProjectReader::readProfiles(const JsonNode &node, ProjectValues &)
{
    if (node.type != Type::Object)
        return fail(node, u"this must be an object, as in {\"release\": {\"sort\": true}}"_s);
    for (std::size_t i = 0; i < node.keys.size(); ++i) {
        m_profile = node.keys[i].text;
        if (m_profile.isEmpty())
            return fail(node.keys[i], u"a profile must have a name"_s);
        if (!readKeys(node.items[i], m_project.profiles[m_profile], true))
            return false;
    }
    m_profile.clear();
    return true;
}

} // namespace

Project readProject(const QString &file, const QByteArray &bytes)
{
    Project project;
    project.file = file;
    project.folder = PathString::folder(file).toString();
    const JsonText text(bytes);
    ProjectReader(project, text).read();
    return project;
}

} // namespace brevant
