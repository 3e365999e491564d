// The import of a postal code table with the csv and encoding_rs crates, code page 932: decoded block by block,
// fields checked for length, numbers parsed, all stored in one reused record. Usage: import_postal FILE
use std::fs::File;
use std::io::{self, Read};

struct Decoded<R: Read> {
    source: R,
    decoder: encoding_rs::Decoder,
    raw: Vec<u8>,
    raw_at: usize,
    raw_end: usize,
    ended: bool,
}

impl<R: Read> Read for Decoded<R> {
    fn read(&mut self, out: &mut [u8]) -> io::Result<usize> {
        loop {
            if self.raw_at == self.raw_end && !self.ended {
                self.raw_end = self.source.read(&mut self.raw)?;
                self.raw_at = 0;
                self.ended = self.raw_end == 0;
            }
            let (_, taken, made, _) =
                self.decoder.decode_to_utf8(&self.raw[self.raw_at..self.raw_end], out, self.ended);
            self.raw_at += taken;
            if made > 0 || self.ended {
                return Ok(made);
            }
        }
    }
}

#[derive(Default)]
struct Postal {
    texts: [String; 9],
    numbers: [u8; 6],
}

const LONGEST: [usize; 9] = [5, 5, 7, 31, 63, 127, 31, 63, 127];

fn main() {
    let path = std::env::args().nth(1).expect("usage: import_postal FILE");
    let source = Decoded {
        source: File::open(path).expect("the file opens"),
        decoder: encoding_rs::SHIFT_JIS.new_decoder_without_bom_handling(),
        raw: vec![0; 256 * 1024],
        raw_at: 0,
        raw_end: 0,
        ended: false,
    };
    let mut reader = csv::ReaderBuilder::new()
        .has_headers(false)
        .buffer_capacity(256 * 1024)
        .from_reader(source);
    let mut fields = csv::StringRecord::new();
    let mut record = Postal::default();
    let (mut rows, mut bad, mut sum) = (0u64, 0u64, 0u64);
    while reader.read_record(&mut fields).expect("a record") {
        let mut good = fields.len() == 15;
        for i in 0..9 {
            let text = fields.get(i).unwrap_or("");
            good &= text.chars().count() <= LONGEST[i];
            record.texts[i].clear();
            record.texts[i].push_str(text);
        }
        for i in 0..6 {
            match fields.get(i + 9).unwrap_or("").parse::<u8>() {
                Ok(number) if number <= 9 => record.numbers[i] = number,
                _ => good = false,
            }
        }
        if !good {
            bad += 1;
            continue;
        }
        rows += 1;
        sum += record.texts[8].chars().next().map_or(0, |c| c as u64);
        sum += record.numbers.iter().map(|&n| n as u64).sum::<u64>();
    }
    println!("rows={} bad={} sum={}", rows, bad, sum);
}
