"""Every text that is shown can be translated, and every catalogue is whole."""

import importlib.machinery
import importlib.util
import pathlib
import tempfile
import unittest

import shown_texts

ROOT = pathlib.Path(__file__).resolve().parents[2]
loader = importlib.machinery.SourceFileLoader("texts", str(ROOT / "scripts" / "texts"))
texts = importlib.util.module_from_spec(importlib.util.spec_from_loader("texts", loader))
loader.exec_module(texts)


class TheTree(unittest.TestCase):
    maxDiff = None

    def test_marks_what_it_shows(self):
        self.assertEqual("", "\n".join(shown_texts.faults(ROOT)))

    def test_catalogues_are_whole(self):
        self.assertGreater(len(texts.entries(texts.POT)), 1000)
        self.assertEqual("", "\n".join(texts.faults()))


class TheScanner(unittest.TestCase):
    def test_finds_words_outside_marking_calls(self):
        for code in ['setWords("Nothing to show");', 'return "Done";', 'label = "Late" + name;',
                     'tell(QStringLiteral("Nothing was "\n    "written"));',
                     'content.caption = "open";', 'setUnit(few ? "day" : worded("days"));']:
            with self.subTest(code=code):
                self.assertEqual(1, len(list(shown_texts.unmarked(code))))

    def test_leaves_the_others(self):
        for code in ['setWords(worded("Nothing to show"));', '// "Nothing to show"',
                     'plural("{count} file is", "{count} files are", n);', 'symbol("trash");',
                     'log_.info("nothing to show here");', 'f("key"); g("#FBBF24"); h("a/b");',
                     'translated("One is here "\n   "and one there", {{"name", x}});']:
            with self.subTest(code=code):
                self.assertEqual([], list(shown_texts.unmarked(code)))


class TheCheck(unittest.TestCase):
    """Of catalogues beside a template that is the sources' own."""

    def faults(self, translation):
        template = ('msgid "Delete {name}"\nmsgstr ""\n\n'
                    'msgid "{count} file"\nmsgid_plural "{count} files"\nmsgstr[0] ""\n')
        with tempfile.TemporaryDirectory() as folder:
            pot = pathlib.Path(folder, "tavrin.pot")
            pot.write_text(template, encoding="utf-8")
            pathlib.Path(folder, "de.po").write_text(translation, encoding="utf-8")
            saved = texts.POT, texts.extracted
            texts.POT, texts.extracted = pot, lambda: template
            try:
                return texts.faults()
            finally:
                texts.POT, texts.extracted = saved

    def test_finds_holes_and_places(self):
        files = ('msgid "{count} file"\nmsgid_plural "{count} files"\n'
                 'msgstr[0] "Eine Datei"\nmsgstr[1] "{count} Dateien"\n')
        whole = 'msgid "Delete {name}"\nmsgstr "{name} löschen"\n\n' + files
        self.assertEqual([], self.faults(whole))
        for translation, fault in [
            (files, "no translation"),
            (whole.replace("{name} löschen", ""), "no translation"),
            ("#, fuzzy\n" + whole, "no translation"),
            (whole.replace("{name} lö", "Lö"), "lacks {name}"),
            (whole.replace("löschen", "{what}"), "has {what}"),
        ]:
            with self.subTest(fault=fault):
                found = self.faults(translation)
                self.assertEqual(1, len(found))
                self.assertIn(fault, found[0])


if __name__ == "__main__":
    unittest.main()
