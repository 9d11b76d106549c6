// Numbers, times and records as people read them.

const kNumber = new Intl.NumberFormat("en-GB");
const kUnits = ["B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"];

export const count = (number) => kNumber.format(number);

export function counted(number, one, many) {
    return count(number) + "\u00a0" + (number === 1 ? one : many);
}

export function bytes(number) {
    let value = Number(number);
    let unit = 0;
    while (Math.abs(value) >= 1024 && unit < kUnits.length - 1) {
        value /= 1024;
        unit += 1;
    }
    const digits = unit === 0 || Number.isInteger(value) ? 0 : Math.abs(value) < 10 ? 2 : Math.abs(value) < 100 ? 1 : 0;
    return value.toFixed(digits) + "\u00a0" + kUnits[unit];
}

export function percent(part, whole) {
    if (!whole) return "";
    const share = (100 * part) / whole;
    return (share > 0 && share < 1 ? "<1" : share.toFixed(0)) + "\u00a0%";
}

export function milliseconds(number) {
    if (number >= 10000) return (number / 1000).toFixed(1) + "\u00a0s";
    return number >= 100 ? number.toFixed(0) : number >= 10 ? number.toFixed(1) : number.toFixed(2);
}

export function seconds(number) {
    if (number >= 120) return Math.floor(number / 60) + "\u00a0min " + Math.floor(number % 60) + "\u00a0s";
    return number.toFixed(1) + "\u00a0s";
}

const pad = (number, width = 2) => String(number).padStart(width, "0");

export function clock(date, hasMilliseconds = false) {
    const time = pad(date.getHours()) + ":" + pad(date.getMinutes()) + ":" + pad(date.getSeconds());
    return hasMilliseconds ? time + "." + pad(date.getMilliseconds(), 3) : time;
}

export function day(date) {
    return date.getFullYear() + "-" + pad(date.getMonth() + 1) + "-" + pad(date.getDate());
}

// In seconds since 1970; where the scenario counts requests, since the start of the simulator.
export function storageTime(time) {
    if (time === null || time === undefined) return "";
    if (time < 100000000) return "second " + time;
    const date = new Date(time * 1000);
    return day(date) + " " + clock(date);
}

const kVolumeTexts = {
    nfs: (volume) => [volume.exportHost + ":" + volume.exportPath],
    cifs: (volume) => ["\\\\" + volume.exportHost + "\\" + volume.shareName],
    scsi: (volume) => [volume.lunWWNN + " " + volume.lunSerial],
    device: (volume) => [volume.devicePath],
    ndmp: (volume) => [volume.exportfiler + ":" + volume.exportpath],
};

// {"nfs": {...}} as "NFS filer1:/vol/home".
export function volume(record) {
    const [kind, members] = Object.entries(record ?? {})[0] ?? ["", {}];
    const text = kVolumeTexts[kind]?.(members) ?? Object.values(members);
    return kind.toUpperCase() + " " + text.join(" ");
}

// The same in pieces, between which a line had better be broken than within them.
export const pieces = (text) => text.split(/(?<=[/\\ :])/);

export const partner = (record) => record.server + " / " + record.lsu;
