/** The newest of what comes in, up to a number: what is older is forgotten. */
export class Ring<T> {
    readonly capacity: number;
    private readonly items: (T | undefined)[] = [];
    private start = 0; // the place of the oldest
    private count = 0;

    constructor(capacity: number) {
        this.capacity = capacity;
    }

    get length(): number {
        return this.count;
    }

    /** Adds the newest. What had to go for it is returned. */
    push(item: T): T | undefined {
        const place = (this.start + this.count) % this.capacity;
        if (this.count < this.capacity) {
            this.items[place] = item;
            this.count += 1;
            return undefined;
        }
        const oldest = this.items[place];
        this.items[place] = item;
        this.start = (this.start + 1) % this.capacity;
        return oldest;
    }

    clear(): void {
        this.items.length = 0;
        this.start = 0;
        this.count = 0;
    }

    /** All, the newest first. */
    newestFirst(): T[] {
        const all: T[] = [];
        for (let index = this.count - 1; index >= 0; --index) {
            all.push(this.items[(this.start + index) % this.capacity] as T);
        }
        return all;
    }
}
