// The part of the address behind the "#": a view's name and what it shows.
export function readFragment() {
    const [view, query] = decodeFragment().split("?", 2);
    return { view, query: new URLSearchParams(query ?? "") };
}

function decodeFragment() {
    return location.hash.replace(/^#/, "");
}

export const changesLink = (server, lsu) => "#changes?" + new URLSearchParams({ server, lsu });
