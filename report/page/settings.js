// What the user wants of every report, kept in the browser where it can be kept.

const KEY = "report settings";

// {settings, storage}: settings are {language, single, group, hidden, keep()}; storage is null where there is none.
export function readSettings() {
  const storage = openStorage();
  const settings = { language: "", single: false, group: "", hidden: ["page"] };
  try {
    const kept = JSON.parse(storage?.getItem(KEY) ?? "{}");
    if (["en", "zh"].includes(kept.language)) settings.language = kept.language;
    settings.single = kept.single === true;
    if (typeof kept.group === "string") settings.group = kept.group;
    if (Array.isArray(kept.hidden)) settings.hidden = kept.hidden.filter((one) => typeof one === "string");
  } catch {
    // What cannot be read is as if it had never been kept.
  }
  settings.keep = () => {
    try {
      storage?.setItem(KEY, JSON.stringify({ ...settings, keep: undefined }));
    } catch {
      // A full or closed storage: the page works on without it.
    }
  };
  return { settings, storage };
}

// A browser that keeps nothing for files throws when it is asked.
function openStorage() {
  try {
    window.localStorage.getItem(KEY);
    return window.localStorage;
  } catch {
    return null;
  }
}
