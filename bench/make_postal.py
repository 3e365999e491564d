"""Writes a file of the shape of the national postal code table: code page 932, CR LF, 15 columns, 120,000 rows.
Usage: make_postal.py FILE"""
import random
import sys

KANA = "ｱｲｳｴｵｶｷｸｹｺｻｼｽｾｿﾀﾁﾂﾃﾄﾅﾆﾇﾈﾉﾊﾋﾌﾍﾎﾏﾐﾑﾒﾓﾔﾕﾖﾗﾘﾙﾚﾛﾜﾝﾞ"
KANJI = "北海道札幌市中央区旭川東西南山本町田村島津川原浜松大小上下新古高長福岡横青森秋宮城"

random.seed(932)


def text(letters, low, high):
    return "".join(random.choice(letters) for _ in range(random.randint(low, high)))


with open(sys.argv[1], "w", encoding="cp932", newline="") as file:
    for _ in range(120_000):
        code = random.randint(1101, 47382)
        quoted = [
            f"{random.randint(0, 999):<5}",
            f"{random.randint(0, 9999999):07}",
            text(KANA, 5, 9),
            text(KANA, 6, 14),
            text(KANA, 4, 20),
            text(KANJI, 3, 4),
            text(KANJI, 3, 7),
            text(KANJI, 2, 10),
        ]
        numbers = [str(random.randint(0, 1)) for _ in range(4)] + ["0", str(random.randint(0, 6))]
        file.write(f"{code:05}," + ",".join(f'"{field}"' for field in quoted) + "," + ",".join(numbers) + "\r\n")
