"""Text in many scripts: drawn with a font that has it, and extracted as it was written."""

from entry import page

GREETINGS = {
    "latin": ("Ligatures and accents", "en", "efficient waffle façade naïve Čeština Dvořák Straße Ångström"),
    "greek-cyrillic": ("Greek and Cyrillic", "el", "Καλημέρα κόσμε Добрый день світе"),
    "chinese": ("Chinese, simplified and traditional", "zh", "你好世界 繁體中文 漢字"),
    "japanese": ("Japanese", "ja", "こんにちは世界 カタカナ 漢字かな"),
    "korean": ("Korean", "ko", "안녕하세요 세계 한국어"),
    "thai": ("Thai", "th", "สวัสดีชาวโลก"),
    "emoji": ("Emoji", "en", "smile 😀 heart ❤️ rocket 🚀"),
}

PAGES = [page(name, trouble, f"<p lang={language}>{text}</p><h1 lang={language}>{text}</h1>", words=text.split())
         for name, (trouble, language, text) in GREETINGS.items()]
PAGES += [
    page("hebrew", "Hebrew", "<p>שלום עולם</p>", root="dir=rtl lang=he", words=["שלום", "עולם"]),
    page("arabic", "Arabic", "<p>مرحبا بالعالم</p>", root="dir=rtl lang=ar", words=["مرحبا", "بالعالم"]),
    page("mixed-directions", "Hebrew within English", "<p>before שלום after 123</p>", words=["before", "שלום", "after", "123"]),
    page("devanagari", "Devanagari", "<p lang=hi>नमस्ते दुनिया</p>", words=["नमस्ते"]),
    page("decorated", "Letter spacing, small capitals, shadows and columns of text",
         "<p class=a>spaced</p><p class=b>capitals</p><p class=c>shadowed</p><p class=d>justified words in a line that is broken somewhere</p>",
         style=".a{letter-spacing:3px}.b{font-variant:small-caps}.c{text-shadow:2px 2px 3px #888}.d{text-align:justify;width:200px}"),
]
